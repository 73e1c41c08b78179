#pragma once

#include <QStringList>

/// The language of the host's texts: Russian or English. The module's window is Russian in both.
namespace Translation {

/// The codes that --lang accepts: "ru" and "en".
QStringList languages();

/// The value of --lang if that is one of languages(), else "ru" if the system's language is Russian, else
/// "en".
QString language(const QStringList &arguments);

/// Installs the texts of the language, also Qt's own where its translations are installed, into the current
/// application object, and makes the language's locale the default.
void install(const QString &language);

} // namespace Translation
