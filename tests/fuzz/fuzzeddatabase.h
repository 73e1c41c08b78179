#pragma once

#include "bytereader.h"

#include <QSqlDatabase>
#include <QTemporaryDir>

/// The scratch file that the module works on, in a home of its own, and a connection beside the module's.
class FuzzedDatabase final
{
    Q_DISABLE_COPY(FuzzedDatabase)
public:
    /// Sets the process's home, in the folder for temporary files; ends the process if it cannot be created.
    FuzzedDatabase();

    /// Restores the initial content if it was changed. True if so.
    bool restore();
    /// What another program may write.
    void change(ByteReader &bytes);
    /// Ends the process if the module has left a transaction open.
    void check();

private:
    void exec(const QString &statement);
    int version();

    QTemporaryDir m_home;
    QSqlDatabase m_database;
    int m_restoredVersion = -1;
    bool m_changed = false;
};
