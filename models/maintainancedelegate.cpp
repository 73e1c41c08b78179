#include "models/maintainancedelegate.h"

#include "data/duerule.h"
#include "models/cellcolors.h"
#include "models/maintainancemodel.h"

#include <QApplication>
#include <QPainter>

namespace {

/// Draws with the pen that the cell before left set.
void paintBand(QPainter *painter, QRect cell, const QColor &color)
{
    cell.setTop(cell.top() + cell.height() / 2);
    painter->save();
    painter->setBrush(color);
    painter->drawRect(cell);
    painter->restore();
}

} // namespace

MaintainanceDelegate::MaintainanceDelegate(QObject *parent) : GridDelegate(parent)
{
}

void MaintainanceDelegate::setReglament(const ReglamentSource *reglament)
{
    m_reglament = reglament;
}

void MaintainanceDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const
{
    if (const std::optional<QColor> color = bandColor(index))
        paintBand(painter, option.rect, *color);
    GridDelegate::paint(painter, option, index);
}

QSize MaintainanceDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem content(option);
    initStyleOption(&content, index);
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    const auto size = [&] {
        return style->sizeFromContents(QStyle::CT_ItemViewItem, &content, QSize(), option.widget);
    };
    const int width = size().width();
    content.features |= QStyleOptionViewItem::HasDisplay;
    content.text = QChar(QChar::LineSeparator);
    return {width, size().height()};
}

std::optional<QColor> MaintainanceDelegate::bandColor(const QModelIndex &index) const
{
    const auto *proxy = qobject_cast<const QAbstractProxyModel *>(index.model());
    const auto *table = proxy ? qobject_cast<const MaintainanceModel *>(proxy->sourceModel()) : nullptr;
    if (!table)
        return std::nullopt;

    const QModelIndex cell = proxy->mapToSource(index);
    const OperationStat *stat = table->shownOperation(cell);
    if (!stat)
        return std::nullopt;

    const QString &carModel = table->itemAt(cell.row()).model;
    const int opId = *table->operationOfColumn(cell.column());
    const Limits limits = m_reglament ? m_reglament->limits(carModel, opId) : Limits();
    return DueRule::isDue(*stat, limits) ? CellColors::attention : CellColors::withinLimits;
}
