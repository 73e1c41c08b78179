#pragma once

#include <QFont>

#include <optional>

/// The font, condensed only as far as each line of the text needs to fit the width in pixels; unchanged if
/// the text fits already, and none if the text would have to be condensed by more than 15 %.
std::optional<QFont> condensedFont(const QString &text, const QFont &font, int width);
