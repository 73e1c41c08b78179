#pragma once

#include "data/garagedatabase.h"

#include <QLatin1String>
#include <QVariant>

#include <functional>
#include <initializer_list>
#include <utility>

/// Values for the named placeholders of a statement. A null text is stored as an empty one.
using StatementValues = std::initializer_list<std::pair<QLatin1String, QVariant>>;

/// One write of the module: from "BEGIN IMMEDIATE" to "COMMIT".
///
/// While another connection keeps the database busy, BEGIN and COMMIT wait in the calling thread, by default
/// without limit. Any other failure ends the write silently: nothing of it is stored. The connection is never
/// left inside a transaction. What is committed is on the disk, and survives a power cut.
class ImmediateTransaction final
{
    Q_DISABLE_COPY(ImmediateTransaction)
public:
    /// Called before each further attempt on a busy database; false ends the write.
    using RetryPredicate = std::function<bool()>;

    /// Begins. Opens the connection first if it is not open.
    explicit ImmediateTransaction(GarageDatabase &database, RetryPredicate mayRetry = {});
    ~ImmediateTransaction();

    /// A query for one statement of this write, with named placeholders.
    QSqlQuery prepare(const QString &statement) const;
    /// Runs a prepared statement with these values. Its failure does not end the write, unless SQLite ended
    /// the whole transaction over it, or the disk is full or broken: then no further statement is run.
    bool exec(QSqlQuery &query, StatementValues values);

    /// True once everything is stored.
    bool commit();

private:
    void makeDurable();
    bool runWhileBusy(const QString &statement) const;
    void leave();

    GarageDatabase &m_database;
    const RetryPredicate m_mayRetry;
    bool m_active = false;
};

/// One statement as a write of its own. Returns the id of the row that an INSERT added; invalid if nothing
/// was stored.
QVariant writeStatement(GarageDatabase &database, const QString &statement, StatementValues values);
