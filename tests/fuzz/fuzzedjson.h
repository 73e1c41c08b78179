#pragma once

#include "bytereader.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// Messages made of bytes: the module's own keys with values of any kind, or whatever text parses.
namespace FuzzedJson {

/// One of the module's event names, or any text.
QString eventName(ByteReader &bytes);
QJsonObject object(ByteReader &bytes);
/// Some of these keys, with values of any kind.
QJsonObject objectOf(ByteReader &bytes, const QStringList &keys);

} // namespace FuzzedJson
