#include "settings/settingsdelegate.h"

#include "settings/serviceoperationsmodel.h"
#include "settings/servicereglamentmodel.h"

#include <QHeaderView>
#include <QSet>
#include <QTreeView>

#include <algorithm>

namespace {

const QChar lineBreak(QChar::LineSeparator);

const ServiceReglamentModel *scheduleOf(const QModelIndex &index)
{
    return qobject_cast<const ServiceReglamentModel *>(index.model());
}

/// The text on one line, on two, on three: hours, runs, laps. One for any other text.
QStringList brokenTexts(const QString &limits)
{
    QStringList figures = limits.split(QLatin1String(". "));
    constexpr int figureCount = 3;
    if (figures.size() != figureCount)
        return {limits};
    figures[0] += QLatin1Char('.');
    figures[1] += QLatin1Char('.');
    const QChar blank(QLatin1Char(' '));
    return {limits, figures[0] + blank + figures[1] + lineBreak + figures[2],
            figures[0] + lineBreak + figures[1] + blank + figures[2], figures.join(lineBreak)};
}

/// The column that QTreeView always asks for the height of a row, however far it is scrolled.
int lastColumn(const QTreeView &view)
{
    const QHeaderView &header = *view.header();
    const int step = view.isRightToLeft() ? 1 : -1;
    int visual = view.isRightToLeft() ? 0 : header.count() - 1;
    while (visual >= 0 && visual < header.count() && header.isSectionHidden(header.logicalIndex(visual)))
        visual += step;
    return header.logicalIndex(visual);
}

} // namespace

QSize SettingsDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QSize size = GridDelegate::sizeHint(option, index);
    const ServiceReglamentModel *schedule = scheduleOf(index);
    const auto *view = qobject_cast<const QTreeView *>(option.widget);
    if (!schedule || !view || !view->isVisible() || index.column() != lastColumn(*view))
        return size;
    QStyleOptionViewItem lines(option);
    GridDelegate::initStyleOption(&lines, index);
    lines.features |= QStyleOptionViewItem::HasDisplay;
    lines.text = QString(mostLines(option, *view, *schedule) - 1, lineBreak);
    return {size.width(),
            view->style()->sizeFromContents(QStyle::CT_ItemViewItem, &lines, QSize(), view).height()};
}

bool SettingsDelegate::isUnsaved(const QModelIndex &index) const
{
    const auto *model = qobject_cast<const ServiceOperationsModel *>(index.model());
    return model && index.isValid() && !model->isStored(index.row());
}

void SettingsDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    GridDelegate::initStyleOption(option, index);
    const ServiceReglamentModel *schedule = scheduleOf(index);
    if (!schedule)
        return;
    if (!(option->displayAlignment & Qt::AlignVertical_Mask))
        option->displayAlignment |= Qt::AlignVCenter;
    if (option->rect.width() <= 0 || !schedule->isOperationColumn(index.column()))
        return;
    for (const QString &text : brokenTexts(option->text)) {
        option->text = text;
        if (fits(*option))
            return;
    }
}

int SettingsDelegate::mostLines(const QStyleOptionViewItem &option, const QTreeView &view,
                                const ServiceReglamentModel &schedule) const
{
    int most = 1;
    QSet<QPair<int, QString>> measured; // many columns have the same width and the same few texts
    for (int column = 0; column < schedule.columnCount(); ++column) {
        const int width = view.columnWidth(column);
        for (int row = 0; row < schedule.rowCount(); ++row) {
            const QModelIndex index = schedule.index(row, column);
            const QString text = index.data().toString();
            if (text.isEmpty() || measured.contains({width, text}))
                continue;
            measured.insert({width, text});
            QStyleOptionViewItem cell(option);
            cell.rect = QRect(0, 0, width, option.fontMetrics.height());
            initStyleOption(&cell, index);
            most = std::max(most, int(cell.text.count(lineBreak)) + 1);
        }
    }
    return most;
}
