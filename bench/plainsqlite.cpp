#include "bench/plainsqlite.h"

#include <QFile>

namespace {

std::vector<std::string> readStatements(const QString &fileName)
{
    QFile file(QStringLiteral(GARAGE_BENCH_FOLDER "/") + fileName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s", qPrintable(file.fileName()));
    std::vector<std::string> statements;
    for (const QByteArray &statement : file.readAll().split(';')) {
        if (!statement.trimmed().isEmpty())
            statements.push_back(statement.trimmed().toStdString());
    }
    return statements;
}

} // namespace

const std::vector<std::string> &reloadStatements()
{
    static const std::vector<std::string> statements = readStatements(QStringLiteral("statements.sql"));
    return statements;
}

const std::vector<std::string> &remoteStatements()
{
    static const std::vector<std::string> statements = readStatements(QStringLiteral("remotestatements.sql"));
    return statements;
}

PlainSqlite::PlainSqlite(const QByteArray &path)
{
    sqlite3 *database = nullptr;
    if (sqlite3_open(path.constData(), &database) != SQLITE_OK)
        qFatal("Cannot open %s", path.constData());
    m_database.reset(database);
}

void PlainSqlite::exec(const char *statement)
{
    if (sqlite3_exec(m_database.get(), statement, nullptr, nullptr, nullptr) != SQLITE_OK)
        qFatal("%s: %s", statement, sqlite3_errmsg(m_database.get()));
}

PlainSqlite::Statement PlainSqlite::prepare(const char *statement)
{
    sqlite3_stmt *prepared = nullptr;
    if (sqlite3_prepare_v2(m_database.get(), statement, -1, &prepared, nullptr) != SQLITE_OK)
        qFatal("%s: %s", statement, sqlite3_errmsg(m_database.get()));
    return Statement(prepared);
}

qint64 PlainSqlite::readAll(const char *statement)
{
    const Statement prepared = prepare(statement);
    sqlite3_stmt *row = prepared.get();
    const int columns = sqlite3_column_count(row);
    qint64 checksum = 0;
    while (sqlite3_step(row) == SQLITE_ROW) {
        for (int column = 0; column < columns; ++column) {
            if (sqlite3_column_type(row, column) == SQLITE_INTEGER)
                checksum += sqlite3_column_int64(row, column);
            else if (const unsigned char *text = sqlite3_column_text(row, column))
                checksum += *text + sqlite3_column_bytes(row, column);
        }
    }
    return checksum;
}

int PlainSqlite::write(sqlite3_stmt *statement)
{
    if (sqlite3_step(statement) != SQLITE_DONE)
        qFatal("%s", sqlite3_errmsg(m_database.get()));
    sqlite3_reset(statement);
    return sqlite3_changes(m_database.get());
}
