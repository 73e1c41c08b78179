#include "models/griddelegate.h"

#include "models/cellcolors.h"
#include "models/cellstyle.h"
#include "models/condensedfont.h"
#include "models/outline.h"
#include "models/plaintext.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QMetaProperty>
#include <QPainter>
#include <QTextLayout>
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

/// Whether the style paints the cell as QCommonStyle does, and nothing but a text over its background.
bool isPlainText(const QStyleOptionViewItem &cell)
{
    constexpr QStyleOptionViewItem::ViewItemFeatures others = QStyleOptionViewItem::WrapText
        | QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDecoration;
    return !(cell.features & others) && !cell.state.testFlag(QStyle::State_Editing)
        && cell.showDecorationSelected
        && qstrcmp(styleOf(cell)->metaObject()->className(), "QFusionStyle") == 0;
}

/// Where the text is. Other styles may have to lay it out for that.
QRect textRoom(const QStyleOptionViewItem &cell)
{
    const QStyle *style = styleOf(cell);
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, cell.widget) + 1;
    const QRect room = isPlainText(cell)
        ? cell.rect
        : style->subElementRect(QStyle::SE_ItemViewItemText, &cell, cell.widget);
    return room.adjusted(margin, 0, -margin, 0);
}

QColor textColor(const QStyleOptionViewItem &cell)
{
    const bool isEnabled = cell.state.testFlag(QStyle::State_Enabled);
    const bool isActive = cell.state.testFlag(QStyle::State_Active);
    const QPalette::ColorGroup group = !isEnabled ? QPalette::Disabled
        : isActive                                ? QPalette::Normal
                                                  : QPalette::Inactive;
    const bool isSelected = cell.state.testFlag(QStyle::State_Selected);
    return cell.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
}

/// What CE_ItemViewItem paints for such a cell.
void paintPlainText(QPainter *painter, const QStyleOptionViewItem &cell, const QRect &room,
                    const QTextLayout &layout)
{
    painter->save();
    painter->setClipRect(cell.rect);
    styleOf(cell)->drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, painter, cell.widget);
    const QRect placed = QStyle::alignedRect(Qt::LayoutDirectionAuto, cell.displayAlignment,
                                             layout.boundingRect().size().toSize(), room);
    painter->setPen(textColor(cell));
    layout.draw(painter, QPointF(room.x(), placed.top()));
    painter->restore();
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

QSize GridDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    constexpr int onlyHeight = -1;
    if (option.rect.width() == onlyHeight) {
        if (const std::optional<int> height = heightByLines(option, index))
            return {option.rect.width(), *height};
    }
    return QStyledItemDelegate::sizeHint(option, index);
}

std::optional<int> GridDelegate::heightByLines(const QStyleOptionViewItem &option,
                                               const QModelIndex &index) const
{
    for (const int role :
         {int(Qt::SizeHintRole), int(Qt::FontRole), int(Qt::CheckStateRole), int(Qt::DecorationRole)}) {
        if (index.data(role).isValid())
            return std::nullopt;
    }
    const QVariant value = index.data();
    return value.isValid() ? m_lineHeights.height(displayText(value, option.locale), option) : std::nullopt;
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

void GridDelegate::paintContent(QPainter *painter, QStyleOptionViewItem cell) const
{
    cell.state &= ~QStyle::State_HasFocus;
    const QRect room = textRoom(cell);
    const CellTexts::Text &text = m_texts.text(cell, room.width());
    const bool isLaidOut = text.font || cell.textElideMode == Qt::ElideRight;
    if (isLaidOut && isPlainText(cell) && text.layout->boundingRect().height() <= room.height()) {
        paintPlainText(painter, cell, room, *text.layout);
        return;
    }
    if (!text.font && isLaidOut) {
        cell.text = text.cut;
    } else if (text.font && *text.font != cell.font) {
        cell.font = *text.font;
        cell.fontMetrics = QFontMetrics(cell.font);
    }
    styleOf(cell)->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
}

bool GridDelegate::fits(const QStyleOptionViewItem &cell)
{
    return condensedFont(cell.text, cell.font, textRoom(cell).width()).has_value();
}

void GridDelegate::paintGrid(QPainter *painter, const QStyleOptionViewItem &option)
{
    painter->setPen(option.palette.color(QPalette::Midlight));
    paintOutline(*painter, option.rect);
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
