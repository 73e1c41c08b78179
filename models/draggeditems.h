#pragma once

#include <QByteArray>
#include <QColor>
#include <QJsonArray>
#include <QString>

#include <optional>

/// What is dragged between lists: the data of the MIME type "application/json", an object with the array
/// "srcList" of items.
namespace DraggedItems {

/// Nothing unless the payload is a JSON object; empty if that has no such array.
std::optional<QJsonArray> fromPayload(const QByteArray &payload);

/// The name of a single item, "x N" of several; empty without items.
QString label(const QJsonArray &items);
/// The colour of a single item, invalid if it has none; otherwise white.
QColor fill(const QJsonArray &items);

} // namespace DraggedItems
