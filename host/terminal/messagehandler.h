#pragma once

#include <QString>

/// The destination of the messages of qDebug(), qWarning() and the like, from Qt, the module and the host.
namespace MessageHandler {

/// Writes every message with time and category to the log file, which is truncated first, and to standard
/// error: warnings and worse, or everything if `verbose`. A log file that cannot be opened is skipped.
void install(const QString &logFile, bool verbose);

} // namespace MessageHandler
