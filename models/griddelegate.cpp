#include "models/griddelegate.h"

#include "models/plaintext.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QMetaProperty>
#include <QPainter>
#include <QToolTip>

namespace {

constexpr char openedText[] = "openedText";

QString editedText(const QWidget *editor)
{
    return editor->metaObject()->userProperty().read(editor).toString();
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

void GridDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    QStyledItemDelegate::setEditorData(editor, index);
    editor->setProperty(openedText, editedText(editor));
}

void GridDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    const QString text = editedText(editor);
    const bool isChanged = text != editor->property(openedText).toString();
    if (isChanged || (!text.isEmpty() && isUnsaved(index)))
        QStyledItemDelegate::setModelData(editor, model, index);
}

bool GridDelegate::isUnsaved(const QModelIndex &index) const
{
    Q_UNUSED(index)
    return false;
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
    const QString text = isCut ? PlainText::toolTip(displayText(index.data(), option.locale)) : QString();
    QToolTip::showText(event->globalPos(), text, view, option.rect);
    return true;
}

void GridDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    option->showDecorationSelected = true;
}
