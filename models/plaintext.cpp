#include "models/plaintext.h"

#include <QFontMetrics>
#include <QScreen>
#include <QToolTip>
#include <QWidget>

#include <algorithm>

namespace {

constexpr int mostToolTipLines = 20;
constexpr int leastToolTipLines = 3;
constexpr int nameLength = 40;
constexpr int toolTipLineLength = 56; ///< characters; Qt breaks a line at 80 times the width of an "x"

/// A tool tip up to this height fits above or below the pointer at any position, so that it never receives a
/// click on the widget that it explains.
int toolTipLines(const QWidget &owner)
{
    const QFontMetrics metrics(QToolTip::font());
    const QScreen *screen = owner.screen();
    const int pointerHeight = 3 * metrics.lineSpacing();
    const int room = screen ? screen->availableGeometry().height() / 2 - pointerHeight : 0;
    return std::clamp(room / metrics.lineSpacing(), leastToolTipLines, mostToolTipLines);
}

bool isLineEnd(QChar c)
{
    return c == QLatin1Char('\n') || c == QChar(QChar::LineSeparator);
}

} // namespace

QString PlainText::toolTip(const QString &text, const QWidget &owner)
{
    return QLatin1String("<span style=\"white-space:pre-wrap\">")
        + firstLines(text, toolTipLines(owner), toolTipLineLength).toHtmlEscaped() + QLatin1String("</span>");
}

QString PlainText::firstLines(const QString &text, int lines, int lineLength)
{
    int end = 0;
    int inLine = 0;
    for (; end < text.size(); ++end) {
        const bool isFull = inLine == lineLength;
        if ((isFull || isLineEnd(text.at(end))) && --lines == 0)
            break;
        inLine = isLineEnd(text.at(end)) ? 0 : isFull ? 1 : inLine + 1;
    }
    if (end == text.size())
        return text;
    if (end > 0 && text.at(end - 1).isHighSurrogate())
        --end;
    return text.left(end) + QChar(0x2026);
}

QString PlainText::shortName(const QString &name)
{
    return firstLines(name.simplified(), 1, nameLength);
}
