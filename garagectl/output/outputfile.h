#pragma once

#include <QByteArray>
#include <QString>

/// Files that the user asked for.
namespace OutputFile {

/// Writes all of it or leaves the path as it was; a pipe or a device is written directly. Never replaces an
/// SQLite database. Throws Failure (NotWritten).
void write(const QString &path, const QByteArray &bytes);

} // namespace OutputFile
