#pragma once

/// Item flags beyond Qt's own, by which a model specifies which button a garage tree view shows over a cell.
namespace CellFlags {

constexpr int service = 0x10000; ///< the service button
constexpr int attention = 0x20000; ///< the attention button

} // namespace CellFlags
