#pragma once

/// Item flags beyond the toolkit's own, by which a model tells a garage tree view what a cell offers.
namespace CellFlags {

constexpr int service = 0x10000; ///< the service button
constexpr int attention = 0x20000; ///< the attention button

} // namespace CellFlags
