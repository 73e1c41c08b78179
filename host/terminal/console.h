#pragma once

#include <QByteArray>
#include <QString>

/// What the program says on its terminal; UTF-8 whatever the locale.
namespace Console {

/// One line on standard output, written at once.
void writeLine(const QByteArray &line);
void writeLine(const QString &line);
/// One line on standard error, after the program's name.
void complain(const QString &text);

} // namespace Console
