#include "data/immediatetransaction.h"

#include <QSqlError>
#include <QThread>

namespace {

constexpr unsigned long retryIntervalMs = 100;

QVariant storable(const QVariant &value)
{
    // QVariant::isNull() looks at the text in Qt 5 only.
    const bool isNullText = value.type() == QVariant::String && value.toString().isNull();
    return isNullText ? QVariant(QLatin1String("")) : value;
}

} // namespace

ImmediateTransaction::ImmediateTransaction(GarageDatabase &database, RetryPredicate mayRetry)
    : m_database(database), m_mayRetry(std::move(mayRetry))
{
    m_database.ensureOpen();
    makeDurable();
    m_active = runWhileBusy(QStringLiteral("BEGIN IMMEDIATE"));
}

ImmediateTransaction::~ImmediateTransaction()
{
    if (m_active)
        leave();
}

QSqlQuery ImmediateTransaction::prepare(const QString &statement) const
{
    QSqlQuery query = m_database.newQuery();
    if (m_active)
        query.prepare(statement);
    return query;
}

bool ImmediateTransaction::exec(QSqlQuery &query, StatementValues values)
{
    if (!m_active)
        return false;
    for (const auto &[placeholder, value] : values)
        query.bindValue(placeholder, storable(value));
    if (query.exec())
        return true;

    m_database.countDiskFault(query.lastError());
    // SQLite may have rolled back by itself; the statements still to come would then be stored one by one.
    // A new transaction can begin only outside another. A journal that cannot be created leaves the
    // transaction open, but nothing can be stored in it.
    if (isDiskFault(query.lastError()) || m_database.run(QStringLiteral("BEGIN")).isActive())
        leave();
    return false;
}

bool ImmediateTransaction::commit()
{
    if (!m_active)
        return false;
    if (!runWhileBusy(QStringLiteral("COMMIT"))) {
        leave();
        return false;
    }
    m_active = false;
    return true;
}

/// SQLite's default does not sync the folder after the deletion of the rollback journal: a power cut may
/// bring the journal back, and it then undoes the last write, which the host was already told of.
void ImmediateTransaction::makeDurable()
{
    if (!m_database.isDurable())
        m_database.setDurable(runWhileBusy(GarageDatabase::durabilityStatement()));
}

bool ImmediateTransaction::runWhileBusy(const QString &statement) const
{
    if (!m_database.isOpen())
        return false;
    for (;;) {
        const QSqlQuery query = m_database.run(statement);
        if (query.isActive())
            return true;
        if (m_active)
            m_database.countDiskFault(query.lastError());
        if (!isBusy(query.lastError()) || (m_mayRetry && !m_mayRetry()))
            return false;
        QThread::msleep(retryIntervalMs);
    }
}

void ImmediateTransaction::leave()
{
    m_database.run(QStringLiteral("ROLLBACK"));
    m_active = false;
}

QVariant writeStatement(GarageDatabase &database, const QString &statement, StatementValues values)
{
    ImmediateTransaction transaction(database);
    QSqlQuery query = transaction.prepare(statement);
    const bool done = transaction.exec(query, values);

    const bool stored = transaction.commit() && done;
    return stored ? query.lastInsertId() : QVariant();
}
