#include "models/maintainancedelegate.h"

#include "data/columnkeys.h"
#include "data/duerule.h"
#include "models/cellcolors.h"
#include "models/maintainancemodel.h"

#include <QAbstractProxyModel>
#include <QApplication>
#include <QPainter>

void MaintainanceDelegate::setReglament(const ReglamentSource *reglament)
{
    m_reglament = reglament;
}

void MaintainanceDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const
{
    const auto *proxy = qobject_cast<const QAbstractProxyModel *>(index.model());
    const auto *model = proxy ? qobject_cast<const MaintainanceModel *>(proxy->sourceModel()) : nullptr;
    const QModelIndex source = model ? proxy->mapToSource(index) : QModelIndex();
    if (source.isValid()) {
        const QString key = model->columnKey(source.column());
        const QString text = source.data().toString();
        if (ColumnKeys::isOperation(key) && !text.isEmpty() && text != QLatin1String("\n")) {
            QRect band = option.rect;
            band.setTop(band.top() + band.height() / 2);
            painter->save();
            painter->setBrush(bandColor(model->itemAt(source.row()), ColumnKeys::operationId(key)));
            painter->drawRect(band);
            painter->restore();
        }
    }
    GridDelegate::paint(painter, option, index);
}

QColor MaintainanceDelegate::bandColor(const MaintainanceItem &item, int opId) const
{
    if (!m_reglament || opId == noId)
        return CellColors::withinLimits;
    const bool isDue = DueRule::isDue(item.operation(opId), m_reglament->limit(item.model, opId));
    return isDue ? CellColors::attention : CellColors::withinLimits;
}

QSize MaintainanceDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    // With uniform rows the first row decides for all, and it may hold single lines only.
    QStyleOptionViewItem twoLines(option);
    twoLines.features |= QStyleOptionViewItem::HasDisplay;
    twoLines.text = QStringLiteral("0") + QChar(QChar::LineSeparator) + QLatin1Char('0');
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    const int height =
        style->sizeFromContents(QStyle::CT_ItemViewItem, &twoLines, QSize(), option.widget).height();

    const QSize size = GridDelegate::sizeHint(option, index);
    return {size.width(), qMax(size.height(), height)};
}
