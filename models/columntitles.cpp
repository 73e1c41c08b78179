#include "models/columntitles.h"

#include "models/condensedfont.h"
#include "models/plaintext.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyleOptionHeader>
#include <QToolTip>
#include <QTreeView>

ColumnTitles::ColumnTitles(QTreeView *view) : QHeaderView(Qt::Horizontal, view)
{
    const QHeaderView &former = *view->header();
    setSectionsMovable(former.sectionsMovable());
    setStretchLastSection(former.stretchLastSection());
    setDefaultAlignment(former.defaultAlignment());
}

void ColumnTitles::install(QTreeView *view)
{
    view->setHeader(new ColumnTitles(view));
}

void ColumnTitles::paintSection(QPainter *painter, const QRect &rect, int section) const
{
    const std::optional<QFont> font = fittingFont(section);
    // Qt elides by the font of the header, which is wider than a condensed one. Setting the mode repaints
    // nothing.
    const_cast<ColumnTitles *>(this)->setTextElideMode(font ? Qt::ElideNone : Qt::ElideRight);
    painter->save();
    if (font)
        painter->setFont(*font);
    QHeaderView::paintSection(painter, rect, section);
    painter->restore();
}

bool ColumnTitles::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QHeaderView::viewportEvent(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const int section = logicalIndexAt(help->pos());
    const bool isCut = section != -1 && !fittingFont(section);
    QToolTip::showText(help->globalPos(), isCut ? PlainText::toolTip(title(section), *this) : QString(),
                       this);
    return true;
}

QString ColumnTitles::title(int section) const
{
    return model() ? model()->headerData(section, orientation(), Qt::DisplayRole).toString() : QString();
}

std::optional<QFont> ColumnTitles::fittingFont(int section) const
{
    QStyleOptionHeader option;
    initStyleOption(&option);
    option.rect = QRect(0, 0, sectionSize(section), height());
    option.section = section;
    if (isSortIndicatorShown() && sortIndicatorSection() == section)
        option.sortIndicator = QStyleOptionHeader::SortDown;
    const QRect label = style()->subElementRect(QStyle::SE_HeaderLabel, &option, this);
    return condensedFont(title(section), font(), label.width());
}
