#pragma once

#include "data/records.h"

#include <optional>

/// The three meters of driving and their limits, as numbers.
namespace Meters {

enum Meter { Seconds, Runs, Laps };
constexpr Meter all[] = {Seconds, Runs, Laps};

int driven(const OperationStat &stat, Meter meter);
/// 0: none.
int limit(const Limits &limits, Meter meter);

/// How much of a limit is used up; 1.0 is exactly the limit, which is not exceeded yet.
struct Share
{
    Meter meter = Seconds;
    double value = 0;
};

/// The largest share among the limits above 0; nothing without such a limit. A limit below 0 is exceeded from
/// the start, so it has no share.
std::optional<Share> largestShare(const OperationStat &stat, const Limits &limits);

/// How much may still be driven until the limit is reached; below 0 when it is exceeded. Nothing without a
/// limit.
std::optional<qint64> left(const OperationStat &stat, const Limits &limits, Meter meter);

} // namespace Meters
