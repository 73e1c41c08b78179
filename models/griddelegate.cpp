#include "models/griddelegate.h"

#include "models/cellcolors.h"
#include "models/condensedfont.h"
#include "models/plaintext.h"

#include <QAbstractItemView>
#include <QApplication>
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

// A text beyond either of the first two is huge.
constexpr int mostLines = 100;
constexpr int mostCharacters = 10000;
constexpr int linesOfHugeText = 10;
constexpr int lineLengthOfHugeText = 1000;

const QStyle *styleOf(const QStyleOptionViewItem &option)
{
    return option.widget ? option.widget->style() : QApplication::style();
}

/// The text's font, condensed if that makes it fit; none if it is too wide for that.
std::optional<QFont> fittingFont(const QStyleOptionViewItem &cell)
{
    const QStyle *style = styleOf(cell);
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, cell.widget) + 1;
    const QRect text = style->subElementRect(QStyle::SE_ItemViewItemText, &cell, cell.widget);
    return condensedFont(cell.text, cell.font, text.width() - 2 * margin);
}

bool isHuge(const QString &text)
{
    return text.size() > mostCharacters || text.count(QLatin1Char('\n')) >= mostLines;
}

QString boundedText(const QString &text)
{
    return isHuge(text) ? PlainText::firstLines(text, linesOfHugeText, lineLengthOfHugeText) : text;
}

} // namespace

void GridDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const
{
    QStyleOptionViewItem cell(option);
    initStyleOption(&cell, index);
    paintContent(painter, cell);
    paintGrid(painter, option);
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
    const bool isText = value.userType() == QMetaType::QString;
    return QStyledItemDelegate::displayText(isText ? boundedText(value.toString()) : value, QLocale::c());
}

bool GridDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                             const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);

    QStringList lines;
    if (isCut(option, index))
        lines.append(index.data().toString().replace(QLatin1Char('\n'), QChar(QChar::LineSeparator)));
    lines.append(explanation(index));
    lines.removeAll(QString());
    const QString text = lines.join(QChar(QChar::LineSeparator));
    QToolTip::showText(event->globalPos(), text.isEmpty() ? text : PlainText::toolTip(text, *view), view,
                       option.rect);
    return true;
}

void GridDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    option->showDecorationSelected = true;
    if (option->backgroundBrush.isOpaque())
        CellColors::setReadableText(option->palette);
}

void GridDelegate::paintContent(QPainter *painter, QStyleOptionViewItem cell)
{
    cell.state &= ~QStyle::State_HasFocus;
    if (const std::optional<QFont> font = fittingFont(cell)) {
        cell.font = *font;
        cell.fontMetrics = QFontMetrics(*font);
    }
    styleOf(cell)->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
}

bool GridDelegate::fits(const QStyleOptionViewItem &cell)
{
    return fittingFont(cell).has_value();
}

void GridDelegate::paintGrid(QPainter *painter, const QStyleOptionViewItem &option)
{
    painter->setPen(option.palette.color(QPalette::Midlight));
    painter->drawRect(option.rect);
}

QString GridDelegate::explanation(const QModelIndex &index) const
{
    Q_UNUSED(index)
    return {};
}

bool GridDelegate::isCut(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem cell(option);
    initStyleOption(&cell, index);
    return !fits(cell) || sizeHint(option, index).height() > option.rect.height()
        || isHuge(index.data().toString());
}
