#pragma once

#include "garagectl/fleet/derivation.h"

#include <QJsonObject>
#include <QStringList>

/// A derivation in sentences and for programs.
namespace Explanation {

/// Paragraphs, in the current language.
QStringList sentences(const Derivation &derivation);
QJsonObject json(const Derivation &derivation);

} // namespace Explanation
