#pragma once

#include <QColor>

/// The colours that carry meaning in the tables.
namespace CellColors {

inline const QColor attention(255, 127, 127); ///< over a limit, open, pending
inline const QColor withinLimits(190, 247, 190);
inline const QColor unavailable(192, 192, 192);

} // namespace CellColors
