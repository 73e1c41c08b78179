#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>

class QSqlError;

/// One connection to an SQLite file, with a name of its own; belongs to the thread that made it. Queries
/// obtained from it must be destroyed before it.
class HostConnection final
{
    Q_DISABLE_COPY(HostConnection)
public:
    explicit HostConnection(const QString &path);
    ~HostConnection();

    bool isOpen() const { return m_database.isOpen(); }
    QString path() const { return m_database.databaseName(); }
    /// Why the last statement failed, or empty.
    QString errorText() const { return m_errorText; }
    /// Whether the last statement failed because another connection holds a lock.
    bool failedOnLock() const { return m_failedOnLock; }
    static constexpr int usualBusyTimeout = 1500; // milliseconds
    /// How long a statement waits for a lock before it fails.
    void setBusyTimeout(int milliseconds);

    /// Runs one statement with the values bound to its "?" placeholders.
    [[nodiscard]] bool exec(const QString &statement, const QVariantList &values = {});
    /// As exec(); the query is inactive if the statement failed.
    QSqlQuery query(const QString &statement, const QVariantList &values = {});
    /// First column of the first row; invalid if there is none.
    QVariant value(const QString &statement, const QVariantList &values = {});
    /// A statement to be bound and run many times.
    QSqlQuery prepared(const QString &statement);
    [[nodiscard]] bool exec(QSqlQuery &prepared);
    /// Undoes the open transaction; errorText() keeps the reason of the failure in it.
    void rollback();
    /// Id of the row that the last exec() inserted.
    int lastInsertId() const { return m_lastInsertId; }
    /// Runs every statement of a script; stops at the first that fails.
    [[nodiscard]] bool execScript(const QString &resourcePath);

private:
    void keepError(const QSqlError &error);

    const QString m_name;
    QSqlDatabase m_database;
    QString m_errorText;
    bool m_failedOnLock = false;
    int m_lastInsertId = -1;
};

/// Sets how long a statement waits for a lock, for one scope.
class LockWait final
{
    Q_DISABLE_COPY(LockWait)
public:
    LockWait(HostConnection &connection, int milliseconds) : m_connection(connection)
    {
        m_connection.setBusyTimeout(milliseconds);
    }
    ~LockWait() { m_connection.setBusyTimeout(HostConnection::usualBusyTimeout); }

private:
    HostConnection &m_connection;
};
