#include "data/records.h"

#include <algorithm>

bool MaintainanceItem::hasOpenOperation() const
{
    return std::any_of(ops.cbegin(), ops.cend(),
                       [](const OperationStat &stat) { return stat.state == OpenState; });
}

bool MaintainanceItem::hasOpenComplaint() const
{
    const auto complaint = ops.constFind(complaintOperationId);
    return complaint != ops.cend() && complaint->state == OpenState;
}
