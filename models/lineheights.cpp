#include "models/lineheights.h"

#include "models/cellstyle.h"

#include <QStringList>

namespace {

constexpr int unknown = -1;
constexpr ushort firstRussian = 0x0410; // А
constexpr ushort lastRussian = 0x044F; // я
constexpr ushort upperIo = 0x0401;
constexpr ushort lowerIo = 0x0451;

bool isUsualLetter(QChar c)
{
    const ushort code = c.unicode();
    const bool isAscii = code >= 0x20 && code < 0x7f;
    return isAscii || (code >= firstRussian && code <= lastRussian) || code == upperIo || code == lowerIo;
}

QString usualLetters()
{
    QString letters;
    for (ushort code = 0x20; code <= lowerIo; ++code) {
        if (isUsualLetter(QChar(code)))
            letters.append(QChar(code));
    }
    return letters;
}

QString sample(int lines)
{
    QStringList texts;
    while (texts.size() < lines)
        texts.append(QStringLiteral("x"));
    return texts.join(QChar(QChar::LineSeparator));
}

int styledHeight(QStyleOptionViewItem cell, const QString &text)
{
    cell.features |= QStyleOptionViewItem::HasDisplay;
    cell.text = text;
    return styleOf(cell)->sizeFromContents(QStyle::CT_ItemViewItem, &cell, QSize(), cell.widget).height();
}

} // namespace

std::optional<int> LineHeights::height(const QString &text, const QStyleOptionViewItem &cell)
{
    const int dpi = cell.widget ? cell.widget->logicalDpiY() : 0;
    if (m_style != styleOf(cell) || m_font != cell.font || m_dpi != dpi) {
        m_style = styleOf(cell);
        m_font = cell.font;
        m_dpi = dpi;
        measure(cell);
    }
    if (!m_areLinesEven)
        return std::nullopt;

    int lines = text.isEmpty() ? 0 : 1;
    for (const QChar c : text) {
        if (c == QChar(QChar::LineSeparator))
            ++lines;
        else if (!isUsualLetter(c))
            return std::nullopt;
    }
    while (m_heights.size() <= lines)
        m_heights.append(unknown);
    if (m_heights.at(lines) == unknown)
        m_heights[lines] = styledHeight(cell, sample(lines));
    return m_heights.at(lines);
}

void LineHeights::measure(const QStyleOptionViewItem &cell)
{
    m_heights.clear();
    const int heightOfLine = styledHeight(cell, sample(1));
    // The sizes of a style sheet are those of the sheet that is set, not of the style's object.
    m_areLinesEven = !m_style->inherits("QStyleSheetStyle")
        && heightOfLine == styledHeight(cell, QString(QChar(lastRussian)))
        && heightOfLine == styledHeight(cell, usualLetters());
}
