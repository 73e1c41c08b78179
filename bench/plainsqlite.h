#pragma once

#include <QByteArray>

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

/// One connection of SQLite's C interface: what the same job costs with nothing on top. Failures end the
/// program.
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
    /// Steps to the end and touches every column; gives a checksum, so that nothing is optimised away.
    qint64 readAll(const char *statement);
    /// Steps a writing statement once and makes it ready for the next values; gives the rows it changed.
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
