#pragma once

#include <QStringList>

/// How to put a backup in the place of a database, step by step, with the host closed. The steps name
/// commands for a shell.
QStringList restoreSteps(const QString &backupPath, const QString &databasePath);
