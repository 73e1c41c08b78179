#include "garagectl/fleet/meters.h"

int Meters::driven(const OperationStat &stat, Meter meter)
{
    switch (meter) {
    case Seconds:
        return stat.totalTime;
    case Runs:
        return stat.runs;
    case Laps:
        return stat.laps;
    }
    return 0;
}

int Meters::limit(const Limits &limits, Meter meter)
{
    switch (meter) {
    case Seconds:
        return limits.seconds;
    case Runs:
        return limits.runs;
    case Laps:
        return limits.laps;
    }
    return 0;
}

std::optional<Meters::Share> Meters::largestShare(const OperationStat &stat, const Limits &limits)
{
    std::optional<Share> largest;
    for (const Meter meter : all) {
        if (limit(limits, meter) <= 0)
            continue;
        const double value = double(driven(stat, meter)) / limit(limits, meter);
        if (!largest || value > largest->value)
            largest = Share {meter, value};
    }
    return largest;
}

std::optional<qint64> Meters::left(const OperationStat &stat, const Limits &limits, Meter meter)
{
    if (limit(limits, meter) == 0)
        return std::nullopt;
    return qint64(limit(limits, meter)) - driven(stat, meter);
}
