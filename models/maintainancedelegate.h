#pragma once

#include "models/griddelegate.h"

#include <QColor>

#include <optional>

class ReglamentSource;

/// Colours the operation cells of the maintenance table by the limits: the lower half green, or red once a
/// limit is exceeded. Any other cell, and any other table, is painted as GridDelegate does.
class MaintainanceDelegate final : public GridDelegate
{
    Q_OBJECT
public:
    explicit MaintainanceDelegate(QObject *parent = nullptr);

    /// Not owned, may be null: no limits then.
    void setReglament(const ReglamentSource *reglament);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    /// Always two text lines high, because a view with uniform row heights uses the height of the first row.
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    /// None for a cell that shows no operation.
    std::optional<QColor> bandColor(const QModelIndex &index) const;

    const ReglamentSource *m_reglament = nullptr;
};
