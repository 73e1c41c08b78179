#include "data/records.h"

#include <algorithm>

bool MaintainanceItem::hasOpenOperation() const
{
    return std::any_of(ops.cbegin(), ops.cend(),
                       [](const OperationStat &stat) { return stat.state == OpenState; });
}
