#include "data/duerule.h"

namespace {

template<typename IsLimit>
bool exceedsAnyLimit(const OperationStat &stat, const ReglamentLimit &limit, IsLimit isLimit)
{
    return (isLimit(limit.lapsLimit) && stat.laps > limit.lapsLimit)
        || (isLimit(limit.runsLimit) && stat.runs > limit.runsLimit)
        || (isLimit(limit.timeLimit) && stat.totalTime > limit.timeLimit);
}

} // namespace

bool DueRule::isDue(const OperationStat &stat, const ReglamentLimit &limit)
{
    return exceedsAnyLimit(stat, limit, [](int value) { return value != 0; });
}

bool DueRule::isPending(const OperationStat &stat, const ReglamentLimit &limit)
{
    return stat.state == OpenState || isDue(stat, limit);
}

bool DueRule::isDueForFilter(const OperationStat &stat, const ReglamentLimit &limit)
{
    return exceedsAnyLimit(stat, limit, [](int value) { return value >= 1; });
}
