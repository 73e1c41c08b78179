#pragma once

#include "data/reglamentsource.h"
#include "models/griddelegate.h"

struct MaintainanceItem;

/// Underlays the statistics line of an operation cell with green, or with red when the operation is over one
/// of its limits. Works on a proxy over the maintenance model; any other index is painted as a plain grid
/// cell. Every cell is two lines high.
class MaintainanceDelegate final : public GridDelegate
{
    Q_OBJECT
public:
    using GridDelegate::GridDelegate;

    /// Not owned; without it nothing is over a limit.
    void setReglament(const ReglamentSource *reglament);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    QColor bandColor(const MaintainanceItem &item, int opId) const;

    const ReglamentSource *m_reglament = nullptr;
};
