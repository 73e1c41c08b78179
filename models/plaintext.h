#pragma once

#include <QString>

/// Texts that users typed, for the places that show them.
namespace PlainText {

/// A tool tip that shows markup as it was typed and keeps its lines.
inline QString toolTip(const QString &text)
{
    return QLatin1String("<span style=\"white-space:pre-wrap\">") + text.toHtmlEscaped()
        + QLatin1String("</span>");
}

/// For places that are one line high.
inline QString singleLine(QString text)
{
    return text.replace(QLatin1Char('\n'), QLatin1Char(' '));
}

} // namespace PlainText
