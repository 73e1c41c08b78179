#pragma once

#include "bytereader.h"

#include <QJsonObject>
#include <QString>

/// Messages made of bytes: the module's own keys with values of any kind, or whatever text parses.
namespace FuzzedJson {

/// One of the module's event names, or any text.
QString eventName(ByteReader &bytes);
QJsonObject object(ByteReader &bytes);

} // namespace FuzzedJson
