#include "models/condensedfont.h"

#include <QFontMetricsF>
#include <QStringList>

#include <algorithm>

namespace {

constexpr qreal mostExcess = 1.15;
/// Lower than the excess requires, because a family may have a condensed face that starts again at 100 %.
constexpr qreal narrowestStretch = 0.8;

qreal widestLine(const QStringList &lines, const QFont &font)
{
    const QFontMetricsF metrics(font);
    qreal widest = 0;
    for (const QString &line : lines)
        widest = std::max(widest, metrics.horizontalAdvance(line));
    return widest;
}

QStringList linesOf(const QString &text)
{
    const QChar separator =
        text.contains(QChar(QChar::LineSeparator)) ? QChar(QChar::LineSeparator) : QChar(QChar::LineFeed);
    return text.split(separator);
}

} // namespace

std::optional<QFont> condensedFont(const QString &text, const QFont &font, int width)
{
    const QStringList lines = linesOf(text);
    const qreal whole = widestLine(lines, font);
    if (whole <= width)
        return font;
    if (whole > width * mostExcess)
        return std::nullopt;

    const int plain = font.stretch() > 0 ? font.stretch() : int(QFont::Unstretched);
    const int narrowest = int(plain * narrowestStretch);
    QFont condensed(font);
    for (int stretch = int(plain * width / whole); stretch >= narrowest; --stretch) {
        condensed.setStretch(stretch);
        if (widestLine(lines, condensed) <= width)
            return condensed;
    }
    return std::nullopt;
}
