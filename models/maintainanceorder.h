#pragma once

#include "data/records.h"

#include <Qt>

#include <optional>

/// The order of the maintenance table's rows: what it compares is read from each car once.
class MaintainanceOrder final
{
public:
    struct Key
    {
        QString model;
        int number = noId; ///< -1: not a number
        std::optional<qint64> value; ///< of the operation; none comes last in either direction
    };

    /// `mode` is a MaintainanceModel::SortMode. Without an operation, or in any other mode, cars are ordered
    /// by model and number.
    MaintainanceOrder(std::optional<int> opId, int mode, Qt::SortOrder direction);

    Key key(const MaintainanceItem &car) const;
    /// A strict weak order. Keys with equal values are equivalent, whatever their model and number.
    bool operator()(const Key &a, const Key &b) const;

private:
    std::optional<qint64> value(const MaintainanceItem &car) const;
    bool precedesByModelAndNumber(const Key &a, const Key &b) const;

    const std::optional<int> m_opId;
    const int m_mode;
    const bool m_isAscending;
};
