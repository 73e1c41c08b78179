#pragma once

#include "data/statuscolors.h"

#include <QColor>
#include <QPalette>

/// The colours that carry meaning in the tables.
namespace CellColors {

inline const QColor attention {QRgb(StatusColors::attention)};
inline const QColor withinLimits {QRgb(StatusColors::withinLimits)};
inline const QColor unavailable {QRgb(StatusColors::unavailable)};

/// These colours are light: light text over them is replaced by black; any other is unchanged.
inline void setReadableText(QPalette &palette)
{
    if (palette.color(QPalette::Text).lightness() <= palette.color(QPalette::Base).lightness())
        return;
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::HighlightedText, Qt::black);
}

} // namespace CellColors
