#include "garagectl/doctor/costcheck.h"

#include "data/garagestatistics.h"
#include "data/servicerecordstore.h"
#include "garagectl/database/readonlyfile.h"
#include "garagectl/database/select.h"
#include "garagectl/doctor/catalogue.h"

#include <QElapsedTimer>
#include <QRegularExpression>

namespace {

constexpr double msPerSecond = 1000;

/// The placeholders are bound to NULL.
QStringList planOf(const GarageDatabase &database, const QString &statement)
{
    static const QRegularExpression placeholder(QStringLiteral(":\\w+"));
    constexpr int detail = 3;
    QSqlQuery query = database.newQuery();
    if (!query.prepare(QLatin1String("EXPLAIN QUERY PLAN ") + statement))
        throw query.lastError();
    for (auto match = placeholder.globalMatch(statement); match.hasNext();)
        query.bindValue(match.next().captured(), QVariant());
    if (!query.exec())
        throw query.lastError();
    QStringList plan;
    while (query.next())
        plan.append(query.value(detail).toString());
    return plan;
}

/// The step of the plan that reads the laps: the name of the table follows SCAN or SEARCH.
QString lapStep(const QStringList &plan)
{
    for (const QString &step : plan) {
        if (step.section(QLatin1Char(' '), 1, 1) == QLatin1String("laps"))
            return step;
    }
    return {};
}

Findings judgeLapStep(const QString &step)
{
    const bool isSearched = step.contains(QLatin1String("car_id=? AND lap_timestamp>?"))
        && !step.contains(QLatin1String("AUTOMATIC"));
    if (!isSearched)
        return {DoctorCatalogue::finding("laps-index", 1, {step})};
    if (!step.contains(QLatin1String("COVERING")))
        return {DoctorCatalogue::finding("laps-index-narrow", 1, {step})};
    return {};
}

Findings judgePlans(const GarageDatabase &database)
{
    Findings findings = judgeLapStep(lapStep(planOf(database, GarageStatistics::drivingStatement())));
    const QStringList update = planOf(database, ServiceRecordStore::remoteUpdateStatement());
    if (update.value(0).startsWith(QLatin1String("SCAN")))
        findings.append(DoctorCatalogue::finding("remote-index", 1, update));
    return findings;
}

bool isInterrupted(const QSqlError &error)
{
    return error.nativeErrorCode() == QLatin1String("9"); // SQLITE_INTERRUPT
}

/// How long a statement took, and which it is; empty: not worth mentioning. The timer is valid meanwhile.
QString timeOf(const GarageDatabase &database, const QString &statement, qint64 notableMs,
               QElapsedTimer &timer)
{
    timer.start();
    bool isStopped = false;
    try {
        Select::forEachRow(database, statement, [](const QSqlQuery &) {});
    } catch (const QSqlError &error) {
        if (!isInterrupted(error))
            throw;
        isStopped = true;
    }
    const qint64 ms = timer.elapsed();
    timer.invalidate();
    if (ms < notableMs)
        return {};
    const QString amount = QString::number(double(ms) / msPerSecond, 'f', 1);
    return QStringLiteral("%1%2 s: %3 [%4]")
        .arg(QLatin1String(isStopped ? ">" : ""), amount, statement.left(40),
             planOf(database, statement).join(QLatin1String(" | ")));
}

} // namespace

Findings checkCost(const QString &databasePath, const CostLimits &limits)
{
    Findings findings;
    QElapsedTimer timer; // not valid between two statements
    const auto isTooLong = [&] { return timer.isValid() && timer.hasExpired(limits.longestMs); };
    ReadOnlyFile::read(databasePath,
                       [&](const GarageDatabase &database) { findings = judgePlans(database); });
    QStringList slow;
    for (const QString &statement : GarageStatistics::statements()) {
        // One reading each, so that a host can commit in between.
        QString time;
        ReadOnlyFile::read(
            databasePath,
            [&](const GarageDatabase &database) {
                time = timeOf(database, statement, limits.notableMs, timer);
            },
            isTooLong);
        if (!time.isEmpty())
            slow.append(time);
    }
    if (!slow.isEmpty())
        findings.append(DoctorCatalogue::finding("slow-statement", slow.size(), slow));
    return findings;
}
