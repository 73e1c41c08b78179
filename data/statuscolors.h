#pragma once

/// The colours that carry meaning in window and report, as 0xRRGGBB. All are light: text over them is black.
namespace StatusColors {

constexpr unsigned attention = 0xff7f7f; ///< over a limit, open, pending
constexpr unsigned withinLimits = 0xbef7be;
constexpr unsigned unavailable = 0xc0c0c0;

} // namespace StatusColors
