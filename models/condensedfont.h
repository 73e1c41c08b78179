#pragma once

#include <QFont>

#include <optional>

/// The font, condensed by just so much that each line of the text fits the width in pixels; the font as it is
/// if the text fits already, and none if the text would have to be condensed by more than 15 %.
std::optional<QFont> condensedFont(const QString &text, const QFont &font, int width);
