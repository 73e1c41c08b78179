#include "data/garagedatabase.h"

#include <QDir>
#include <QStandardPaths>

namespace {

int primaryCode(const QSqlError &error)
{
    constexpr int primaryCodeMask = 0xff;
    return error.nativeErrorCode().toInt() & primaryCodeMask;
}

} // namespace

QString garageDatabasePath()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir(documents + QLatin1String("/Ruvalo-QT")).path() + QLatin1String("/DB/ruvalo.sqlite");
}

bool isBusy(const QSqlError &error)
{
    constexpr int sqliteBusy = 5;
    constexpr int sqliteLocked = 6;
    const int code = primaryCode(error);
    return code == sqliteBusy || code == sqliteLocked;
}

bool isDiskFault(const QSqlError &error)
{
    constexpr int sqliteReadOnly = 8;
    constexpr int sqliteIoError = 10;
    constexpr int sqliteFull = 13;
    constexpr int sqliteCannotOpen = 14;
    const int code = primaryCode(error);
    return code == sqliteReadOnly || code == sqliteIoError || code == sqliteFull || code == sqliteCannotOpen;
}

GarageDatabase::GarageDatabase(const QString &connectionName, StatementInterrupter::Condition interruption)
    : GarageDatabase(connectionName, garageDatabasePath(), QString(), std::move(interruption))
{
}

GarageDatabase::GarageDatabase(const QString &connectionName, const QString &databaseName,
                               const QString &connectOptions, StatementInterrupter::Condition interruption)
    : m_connectionName(connectionName)
    , m_interrupter(std::move(interruption))
    , m_database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName))
{
    m_database.setDatabaseName(databaseName);
    m_database.setConnectOptions(connectOptions);
    open();
}

GarageDatabase::~GarageDatabase()
{
    m_database.close();
    m_database = QSqlDatabase(); // the last handle must be released before removal
    QSqlDatabase::removeDatabase(m_connectionName);
}

void GarageDatabase::ensureOpen()
{
    // SQLite would continue to use the old file, which no other program can open any more.
    const std::optional<Platform::FileIdentity> file = fileAtPath();
    const bool isOtherFile = file && file != m_openedFile;
    const bool becameWritable = m_isReadOnly && mayWriteFile();
    if (m_database.isOpen() && (isOtherFile || becameWritable))
        m_database.close();
    if (!m_database.isOpen())
        open();
}

std::optional<Platform::FileIdentity> GarageDatabase::fileAtPath() const
{
    return Platform::identityOfFile(m_database.databaseName());
}

bool GarageDatabase::mayWriteFile() const
{
    return Platform::mayWriteFile(m_database.databaseName());
}

void GarageDatabase::open()
{
    m_isDurable = false;
    if (!m_database.open())
        return;
    m_isReadOnly = !mayWriteFile(); // SQLite then opens it for reading, and never tries again
    const std::optional<Platform::FileIdentity> file = fileAtPath();
    if (file != m_openedFile || m_fileCount == 0)
        ++m_fileCount;
    m_openedFile = file;
    m_interrupter.install(m_database);
    const bool isReady = run(QStringLiteral("PRAGMA encoding=UTF8")).isActive();
    // Not while the file is locked: this would wait once more.
    m_isDurable = isReady && run(durabilityStatement()).isActive();
}

QString GarageDatabase::durabilityStatement()
{
    return QStringLiteral("PRAGMA synchronous=EXTRA");
}

QSqlQuery GarageDatabase::newQuery() const
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    return query;
}

QSqlQuery GarageDatabase::run(const QString &statement) const
{
    QSqlQuery query = newQuery();
    if (isOpen())
        query.exec(statement);
    return query;
}

bool GarageDatabase::next(QSqlQuery &query) const
{
    if (query.next())
        return true;
    if (query.lastError().isValid() && !m_readError.isValid())
        m_readError = query.lastError();
    return false;
}

GarageDatabase::NoWaiting::NoWaiting(const GarageDatabase &database) : m_database(database)
{
    m_database.run(QStringLiteral("PRAGMA busy_timeout=0"));
}

GarageDatabase::NoWaiting::~NoWaiting()
{
    m_database.run(QStringLiteral("PRAGMA busy_timeout=5000"));
}
