#include "models/celltexts.h"

#include "models/condensedfont.h"

#include <QFontMetrics>
#include <QStringList>
#include <QStyle>
#include <QTextOption>

#include <algorithm>

namespace {

const QChar lineSeparator(QChar::LineSeparator);

std::unique_ptr<QTextLayout> laidOutLines(const QString &text, const QFont &font, const QTextOption &option,
                                          int width)
{
    auto layout = std::make_unique<QTextLayout>(text, font);
    layout->setTextOption(option);
    qreal height = 0;
    layout->beginLayout();
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += line.height();
    }
    layout->endLayout();
    return layout;
}

/// The beginning of a line that is wider than the width; the whole line if it is not.
QString withoutHiddenEnd(const QString &line, const QFontMetrics &metrics, int width)
{
    constexpr int usualLetterWidth = 4;
    constexpr int least = 16;
    for (int length = std::max(least, width / usualLetterWidth); length < line.size(); length *= 2) {
        if (metrics.horizontalAdvance(line, length) > width)
            return line.left(length);
    }
    return line;
}

QString withoutHiddenEnds(const QString &text, const QFont &font, int width)
{
    const QFontMetrics metrics(font);
    QStringList lines = text.split(lineSeparator);
    for (QString &line : lines)
        line = withoutHiddenEnd(line, metrics, width);
    return lines.join(lineSeparator);
}

/// The text of a layout with "…" for the end of each line that is too wide.
QString elided(const QTextLayout &layout, int width)
{
    const QFontMetrics metrics(layout.font());
    QString result;
    for (int number = 0; number < layout.lineCount(); ++number) {
        const QTextLine line = layout.lineAt(number);
        const QString text = layout.text().mid(line.textStart(), line.textLength());
        result += line.naturalTextWidth() > width
            ? metrics.elidedText(text, Qt::ElideRight, width, Qt::TextLongestVariant)
            : text;
        if (number + 1 < layout.lineCount() && !result.endsWith(lineSeparator))
            result += lineSeparator;
    }
    return result;
}

} // namespace

const CellTexts::Text &CellTexts::text(const QStyleOptionViewItem &cell, int width)
{
    const Key key {cell.text, cell.font, width, int(cell.displayAlignment), cell.direction};
    if (const Text *known = m_texts.object(key))
        return *known;
    Text *added = laidOut(key).release();
    m_texts.insert(key, added, std::min(mostCost, 1 + int(key.text.size()) / lettersPerCost));
    return *added;
}

std::unique_ptr<CellTexts::Text> CellTexts::laidOut(const Key &key)
{
    auto made = std::make_unique<Text>();
    made->font = condensedFont(key.text, key.font, key.width);
    QTextOption option(QStyle::visualAlignment(key.direction, Qt::Alignment(key.alignment)));
    option.setWrapMode(QTextOption::ManualWrap);
    option.setTextDirection(key.direction);
    if (made->font) {
        made->layout = laidOutLines(key.text, *made->font, option, key.width);
    } else {
        made->cut = withoutHiddenEnds(key.text, key.font, key.width);
        const auto whole = laidOutLines(made->cut, key.font, option, key.width);
        made->layout = laidOutLines(elided(*whole, key.width), key.font, option, key.width);
    }
    made->layout->setCacheEnabled(true);
    return made;
}
