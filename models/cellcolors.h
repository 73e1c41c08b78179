#pragma once

#include <QColor>
#include <QPalette>

/// The colours that carry meaning in the tables.
namespace CellColors {

inline const QColor attention(255, 127, 127); ///< over a limit, open, pending
inline const QColor withinLimits(190, 247, 190);
inline const QColor unavailable(192, 192, 192);

/// These colours are light: light text over them is replaced by black; any other is unchanged.
inline void setReadableText(QPalette &palette)
{
    if (palette.color(QPalette::Text).lightness() <= palette.color(QPalette::Base).lightness())
        return;
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::HighlightedText, Qt::black);
}

} // namespace CellColors
