#include "models/griddelegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace {

/// What people typed is shown as they typed it, also if it looks like markup.
QString plainToolTip(const QString &text)
{
    return QLatin1String("<span style=\"white-space:pre-wrap\">") + text.toHtmlEscaped()
        + QLatin1String("</span>");
}

} // namespace

void GridDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const
{
    QStyleOptionViewItem unfocused(option);
    unfocused.state &= ~QStyle::State_HasFocus;
    QStyledItemDelegate::paint(painter, unfocused, index);

    painter->setPen(option.palette.color(QPalette::Midlight));
    painter->drawRect(option.rect);
}

void GridDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                        const QModelIndex &index) const
{
    Q_UNUSED(index)
    editor->setGeometry(option.rect);
}

bool GridDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                             const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);

    const QSize whole = sizeHint(option, index);
    const bool isCut = whole.width() > option.rect.width() || whole.height() > option.rect.height();
    const QString text = isCut ? plainToolTip(displayText(index.data(), option.locale)) : QString();
    QToolTip::showText(event->globalPos(), text, view, option.rect);
    return true;
}

void GridDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    option->showDecorationSelected = true;
}
