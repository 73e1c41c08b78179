#include "data/duerule.h"

namespace {

template<typename IsLimit>
bool exceedsAnyLimit(const OperationStat &stat, const Limits &limits, IsLimit isLimit)
{
    const auto isExceeded = [&isLimit](int counter, int counterLimit) {
        return isLimit(counterLimit) && DueRule::excess(counter, counterLimit).value_or(0) > 0;
    };
    return isExceeded(stat.laps, limits.laps) || isExceeded(stat.runs, limits.runs)
        || isExceeded(stat.totalTime, limits.seconds);
}

} // namespace

std::optional<qint64> DueRule::excess(int counter, int limit)
{
    return limit == 0 ? std::nullopt : std::make_optional(qint64(counter) - limit);
}

bool DueRule::isDue(const OperationStat &stat, const Limits &limits)
{
    return exceedsAnyLimit(stat, limits, [](int value) { return value != 0; });
}

bool DueRule::isPending(const OperationStat &stat, const Limits &limits)
{
    return stat.state == OpenState || isDue(stat, limits);
}

bool DueRule::isDueForFilter(const OperationStat &stat, const Limits &limits)
{
    return exceedsAnyLimit(stat, limits, [](int value) { return value >= 1; });
}
