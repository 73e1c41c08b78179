#pragma once

#include <QByteArray>
#include <QString>

/// Output to the terminal, in UTF-8 in every locale.
namespace Console {

/// Writes one line to standard output and flushes it.
void writeLine(const QByteArray &line);
void writeLine(const QString &line);
/// Writes one line to standard error, prefixed by the program's name, and flushes it.
void writeError(const QString &text);

} // namespace Console
