#pragma once

#include <QString>
#include <QStringView>

#include <optional>

/// Reads the integer that a text begins with, as the pattern "%d" does: leading blanks, a sign, digits;
/// what follows is ignored ("3B" is 3). No value if the text does not begin with a number. Values beyond 32
/// bits are clamped.
[[nodiscard]] std::optional<int> leadingInteger(QStringView text);

/// Reads hours as people type them, with a comma or a point, and returns whole seconds, truncated towards
/// zero. 0 if the text is no number; values beyond 32 bits are clamped.
[[nodiscard]] int secondsFromHours(QString text);
