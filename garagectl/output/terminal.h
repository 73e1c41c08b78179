#pragma once

#include <QByteArray>
#include <QString>

/// Standard output and standard error; UTF-8 in every locale.
namespace Terminal {

/// All of it on standard output. Throws Failure if it cannot be written.
void write(const QByteArray &bytes);
/// On standard error, after the program's name.
void report(const QString &message);

/// True if standard output is a terminal on which colours are wanted (see https://no-color.org).
bool hasColour();
/// True if standard error is a terminal that can show progress.
bool showsProgress();

} // namespace Terminal
