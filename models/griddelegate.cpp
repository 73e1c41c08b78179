#include "models/griddelegate.h"

#include "models/shownastyped.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QMetaProperty>
#include <QPainter>
#include <QToolTip>

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

void GridDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    const QString typed = editor->metaObject()->userProperty().read(editor).toString();
    if (!typed.isEmpty() || !index.data(Qt::EditRole).toString().isEmpty())
        QStyledItemDelegate::setModelData(editor, model, index);
}

QString GridDelegate::displayText(const QVariant &value, const QLocale &locale) const
{
    Q_UNUSED(locale)
    return QStyledItemDelegate::displayText(value, QLocale::c());
}

bool GridDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                             const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);

    const QSize whole = sizeHint(option, index);
    const bool isCut = whole.width() > option.rect.width() || whole.height() > option.rect.height();
    const QString text = isCut ? ShownAsTyped::toolTip(displayText(index.data(), option.locale)) : QString();
    QToolTip::showText(event->globalPos(), text, view, option.rect);
    return true;
}

void GridDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    option->showDecorationSelected = true;
}
