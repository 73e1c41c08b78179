#pragma once

#include "data/platform.h"
#include "data/statementinterrupter.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>

#include <optional>

/// The SQLite file that host and module share: "Ruvalo-QT/DB/ruvalo.sqlite" in the user's documents.
[[nodiscard]] QString garageDatabasePath();

/// True if another connection kept the database busy or locked.
[[nodiscard]] bool isBusy(const QSqlError &error);

/// True if the file or its journal could not be written: the disk is full or broken, or there are no
/// permissions. Whatever the statement was, others of its transaction would fail as well.
[[nodiscard]] bool isDiskFault(const QSqlError &error);

/// One named connection to the garage database, opened on construction, closed and removed from Qt's list
/// on destruction. Belongs to the creating thread. Opening is never reported as failed: statements on a
/// connection that is not open fail silently. No query on it may outlive it.
class GarageDatabase final
{
    Q_DISABLE_COPY(GarageDatabase)
public:
    /// Statements are interrupted while the condition holds.
    explicit GarageDatabase(const QString &connectionName, StatementInterrupter::Condition interruption = {});
    /// Opens another file, or this one in another way; both as in QSqlDatabase.
    GarageDatabase(const QString &connectionName, const QString &databaseName, const QString &connectOptions,
                   StatementInterrupter::Condition interruption = {});
    ~GarageDatabase();

    /// Tries once more to open a connection that is not open, and opens it again if another file has
    /// replaced the opened one, or if the file could only be read when it was opened and can be written now.
    /// Called before each write and each reload, so that a database that is created later, or a restored
    /// backup, is used without a restart.
    void ensureOpen();

    bool isOpen() const { return m_database.isOpen(); }
    /// Incremented each time another file is opened: data read at another count are from another file.
    int fileCount() const { return m_fileCount; }

    /// Incremented by each write that had begun and was then refused by the disk.
    int diskFaultCount() const { return m_diskFaultCount; }
    /// Increments it if this is a fault of the disk.
    void countDiskFault(const QSqlError &error) { m_diskFaultCount += isDiskFault(error); }

    /// Whether a commit of this connection survives a power cut. Set by every opening, unless the file is
    /// locked: then by the first write.
    bool isDurable() const { return m_isDurable; }
    /// What makes it so.
    static QString durabilityStatement();
    void setDurable(bool isDurable) { m_isDurable = isDurable; }

    /// While this object exists, statements on a busy database fail at once. Otherwise they wait for the
    /// driver's timeout, 5 s.
    class NoWaiting final
    {
        Q_DISABLE_COPY(NoWaiting)
    public:
        explicit NoWaiting(const GarageDatabase &database);
        ~NoWaiting();

    private:
        const GarageDatabase &m_database;
    };

    /// An unused query of this connection, forward-only.
    [[nodiscard]] QSqlQuery newQuery() const;
    /// Runs a statement that yields rows or none; an inactive query if it failed.
    QSqlQuery run(const QString &statement) const;
    /// Moves to the next row. False at the end, and if the statement or its reading failed.
    bool next(QSqlQuery &query) const;
    /// Of the first statement whose reading by next() failed since the construction; invalid if none did.
    QSqlError readError() const { return m_readError; }

private:
    /// Of the file at the database's path; none if there is no file.
    std::optional<Platform::FileIdentity> fileAtPath() const;
    bool mayWriteFile() const;
    void open();

    const QString m_connectionName;
    StatementInterrupter m_interrupter;
    QSqlDatabase m_database;
    std::optional<Platform::FileIdentity> m_openedFile;
    bool m_isReadOnly = false; ///< the file could not be written when it was opened
    bool m_isDurable = false;
    int m_diskFaultCount = 0;
    int m_fileCount = 0;
    mutable QSqlError m_readError;
};
