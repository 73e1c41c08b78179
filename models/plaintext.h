#pragma once

#include <QString>

class QWidget;

/// Texts that users typed, for the places that show them.
namespace PlainText {

/// A tool tip that shows markup as it was typed and keeps its lines. A long text ends with "…" after about
/// 20 lines, or after fewer on a small screen, so that the tool tip leaves the pointer free.
QString toolTip(const QString &text, const QWidget &owner);

/// The first lines of a text, "…" in place of the rest. A line counts once for each `lineLength` characters
/// that it has or begins.
QString firstLines(const QString &text, int lines, int lineLength);

/// The text with blanks in place of line feeds.
inline QString singleLine(QString text)
{
    return text.replace(QLatin1Char('\n'), QLatin1Char(' '));
}

/// A name for a sentence: on one line and not longer than about 40 characters.
QString shortName(const QString &name);

} // namespace PlainText
