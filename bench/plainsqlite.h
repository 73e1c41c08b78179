#pragma once

#include <QByteArray>

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

/// One connection through SQLite's C interface: the cost of a job without any layer above SQLite. A failure
/// ends the program.
class PlainSqlite final
{
public:
    struct Finalizer
    {
        void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Finalizer>;

    explicit PlainSqlite(const QByteArray &path);

    void exec(const char *statement);
    Statement prepare(const char *statement);
    /// Steps to the end and reads every column; returns a checksum, so that nothing is optimised away.
    qint64 readAll(const char *statement);
    /// Steps a writing statement once and resets it for the next values; returns the number of changed rows.
    int write(sqlite3_stmt *statement);

private:
    struct Closer
    {
        void operator()(sqlite3 *database) const { sqlite3_close(database); }
    };
    std::unique_ptr<sqlite3, Closer> m_database;
};

/// The five statements of a reload, in their order; a test compares them with the module's.
const std::vector<std::string> &reloadStatements();
/// The two statements of a remote batch, the update and the insert; a test compares them with the module's.
const std::vector<std::string> &remoteStatements();
