#include "models/maintainancedelegate.h"

#include "data/duerule.h"
#include "models/cellcolors.h"
#include "models/dueexplanation.h"
#include "models/maintainancemodel.h"
#include "models/outline.h"

#include <QApplication>
#include <QPainter>

namespace {

QRect bandOf(QRect cell)
{
    cell.setTop(cell.top() + cell.height() / 2);
    return cell;
}

/// Draws with the pen that the previous cell has set.
void paintBand(QPainter *painter, const QRect &cell, const QColor &color)
{
    const QRect band = bandOf(cell);
    painter->fillRect(band, color);
    paintOutline(*painter, band);
}

/// A selected cell is filled whole.
bool isBandHidden(const QStyleOptionViewItem &option)
{
    return option.state.testFlag(QStyle::State_Selected)
        && option.palette.brush(QPalette::Highlight).isOpaque();
}

/// A cell of the maintenance table that is shown through a proxy; without a table for any other cell.
struct SourceCell
{
    explicit SourceCell(const QModelIndex &shown)
    {
        const auto *proxy = qobject_cast<const QAbstractProxyModel *>(shown.model());
        table = proxy ? qobject_cast<const MaintainanceModel *>(proxy->sourceModel()) : nullptr;
        if (table)
            index = proxy->mapToSource(shown);
    }

    const MaintainanceModel *table = nullptr;
    QModelIndex index;
};

} // namespace

MaintainanceDelegate::MaintainanceDelegate(QObject *parent) : GridDelegate(parent)
{
}

void MaintainanceDelegate::setReglament(const ReglamentSource *reglament)
{
    m_reglament = reglament;
}

void MaintainanceDelegate::setServiceLog(const ServiceLogModel *serviceLog)
{
    m_serviceLog = serviceLog;
}

void MaintainanceDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const
{
    const std::optional<QColor> color = bandColor(index);
    if (color)
        paintBand(painter, option.rect, *color);

    QStyleOptionViewItem overBand(option);
    CellColors::setReadableText(overBand.palette);
    if (!color || overBand.palette == option.palette || isBandHidden(option))
        GridDelegate::paint(painter, option, index);
    else
        paintHalves(painter, option, overBand.palette, index);
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

void MaintainanceDelegate::paintHalves(QPainter *painter, const QStyleOptionViewItem &option,
                                       const QPalette &bandPalette, const QModelIndex &index) const
{
    QStyleOptionViewItem cell(option);
    initStyleOption(&cell, index);
    const int firstLine = int(cell.text.indexOf(QChar(QChar::LineSeparator)));

    QStyleOptionViewItem upper(cell);
    upper.rect.setBottom(bandOf(option.rect).top() - 1);
    upper.text = cell.text.left(firstLine);
    paintContent(painter, upper);

    QStyleOptionViewItem lower(cell);
    lower.rect = bandOf(option.rect);
    lower.text = firstLine == -1 ? QString() : cell.text.mid(firstLine + 1);
    lower.palette = bandPalette;
    paintContent(painter, lower);
    paintGrid(painter, option);
}

QString MaintainanceDelegate::explanation(const QModelIndex &index) const
{
    const SourceCell cell(index);
    if (!cell.index.isValid())
        return {};
    if (const std::optional<int> opId = cell.table->operationOfColumn(cell.index.column()))
        return operationExplanation(*cell.table, cell.index, *opId);
    const bool isRed = qvariant_cast<QBrush>(cell.index.data(Qt::BackgroundRole)).isOpaque();
    return isRed ? openWorkExplanation(cell.table->itemAt(cell.index.row())) : QString();
}

std::optional<QColor> MaintainanceDelegate::bandColor(const QModelIndex &index) const
{
    const SourceCell cell(index);
    const OperationStat *stat = cell.table ? cell.table->shownOperation(cell.index) : nullptr;
    if (!stat)
        return std::nullopt;
    const int opId = *cell.table->operationOfColumn(cell.index.column());
    return DueRule::isDue(*stat, limitsOf(*cell.table, cell.index, opId)) ? CellColors::attention
                                                                          : CellColors::withinLimits;
}

Limits MaintainanceDelegate::limitsOf(const MaintainanceModel &table, const QModelIndex &cell, int opId) const
{
    return m_reglament ? m_reglament->limits(table.itemAt(cell.row()).model, opId) : Limits();
}

QString MaintainanceDelegate::operationExplanation(const MaintainanceModel &table, const QModelIndex &cell,
                                                   int opId) const
{
    const Limits limits = limitsOf(table, cell, opId);
    const OperationStat *stat = table.shownOperation(cell);
    if (!stat)
        return DueExplanation::limitLines(limits).join(QLatin1Char('\n'));
    QStringList lines = DueExplanation::limitLines(*stat, limits);
    lines.append(DueExplanation::lastWork(*stat, latestRecord(*stat)));
    return lines.join(QLatin1Char('\n'));
}

QString MaintainanceDelegate::openWorkExplanation(const MaintainanceItem &car) const
{
    QStringList works;
    for (const OperationStat &stat : car.ops) {
        if (stat.state == OpenState)
            works.append(DueExplanation::openWork(stat, latestRecord(stat)));
    }
    return works.join(QLatin1Char('\n'));
}

const ServiceLogItem *MaintainanceDelegate::latestRecord(const OperationStat &stat) const
{
    const int row = m_serviceLog ? m_serviceLog->rowOf(stat.localId) : -1;
    if (row == -1)
        return nullptr;
    // A new service is shown before the log contains its record.
    const ServiceLogItem &record = m_serviceLog->itemAt(row);
    return record.opTime == stat.lastDone ? &record : nullptr;
}
