#include "data/duerule.h"

namespace {

template<typename IsLimit>
bool exceedsAnyLimit(const OperationStat &stat, const Limits &limits, IsLimit isLimit)
{
    return (isLimit(limits.laps) && stat.laps > limits.laps)
        || (isLimit(limits.runs) && stat.runs > limits.runs)
        || (isLimit(limits.seconds) && stat.totalTime > limits.seconds);
}

} // namespace

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
