#include "host/database/hostconnection.h"

#include <QFile>
#include <QSqlError>
#include <QStringList>
#include <QUuid>

namespace {

bool isLockError(const QSqlError &error)
{
    constexpr int primaryCodeMask = 0xff;
    constexpr int sqliteBusy = 5;
    constexpr int sqliteLocked = 6;
    const int code = error.nativeErrorCode().toInt() & primaryCodeMask;
    return code == sqliteBusy || code == sqliteLocked;
}

} // namespace

HostConnection::HostConnection(const QString &path)
    : m_name(QLatin1String("host-") + QUuid::createUuid().toString(QUuid::WithoutBraces))
    , m_database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name))
{
    m_database.setDatabaseName(path);
    m_database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(usualBusyTimeout));
    if (!m_database.open())
        keepError(m_database.lastError());
}

HostConnection::~HostConnection()
{
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_name);
}

bool HostConnection::exec(const QString &statement, const QVariantList &values)
{
    QSqlQuery done = query(statement, values);
    if (!done.isActive())
        return false;
    m_lastInsertId = done.lastInsertId().toInt();
    return true;
}

QSqlQuery HostConnection::query(const QString &statement, const QVariantList &values)
{
    QSqlQuery query = prepared(statement);
    if (query.lastError().isValid())
        return query; // running it would replace this error by a less specific one
    for (const QVariant &bound : values)
        query.addBindValue(bound);
    const bool isActive = exec(query);
    Q_ASSERT(isActive == query.isActive());
    Q_UNUSED(isActive)
    return query;
}

QVariant HostConnection::value(const QString &statement, const QVariantList &values)
{
    QSqlQuery found = query(statement, values);
    return found.next() ? found.value(0) : QVariant();
}

QSqlQuery HostConnection::prepared(const QString &statement)
{
    QSqlQuery blank(m_database);
    blank.setForwardOnly(true);
    if (!blank.prepare(statement))
        keepError(blank.lastError());
    return blank;
}

bool HostConnection::exec(QSqlQuery &prepared)
{
    const bool done = prepared.exec();
    keepError(done ? QSqlError() : prepared.lastError());
    return done;
}

void HostConnection::keepError(const QSqlError &error)
{
    m_errorText = error.isValid() ? error.text() : QString();
    m_failedOnLock = isLockError(error);
}

void HostConnection::setBusyTimeout(int milliseconds)
{
    prepared(QStringLiteral("PRAGMA busy_timeout=%1").arg(milliseconds)).exec();
}

void HostConnection::rollback()
{
    prepared(QStringLiteral("ROLLBACK")).exec();
}

bool HostConnection::execScript(const QString &resourcePath)
{
    QFile file(resourcePath);
    if (!file.open(QIODevice::ReadOnly)) {
        m_errorText = file.errorString();
        return false;
    }
    QString text;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n')))
        text += line.section(QLatin1String("--"), 0, 0) + QLatin1Char('\n');
    for (const QString &statement : text.split(QLatin1Char(';'))) {
        if (!statement.trimmed().isEmpty() && !exec(statement.trimmed()))
            return false;
    }
    return true;
}
