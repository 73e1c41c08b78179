#include "host/sample/sampledata.h"

#include "host/database/hostconnection.h"
#include "host/database/hosttransaction.h"
#include "host/database/timestamp.h"
#include "host/sample/lapgenerator.h"

#include <QRandomGenerator>
#include <QUuid>

#include <algorithm>
#include <cmath>

namespace {

constexpr int firstCarId = 101;
constexpr int firstPersonId = 11;
constexpr int firstServiceCode = 4001;
constexpr qint64 mechanicsDelay = 2 * 60 * 1000; // after a run, before the record
constexpr int complaintOperation = -1;
constexpr int openState = 0;
constexpr int doneState = 1;

struct SampleSize
{
    int cars;
    int operations;
    int limitFactor;
    int openComplaints;
    int openOperations;
    int resting; // karts not available for runs
    int history; // records per kart and operation at most
    int recordCount; // fill up to so many; 0 = leave as it comes
    DrivingPlan driving;
};

constexpr SampleSize sampleSize = {24, 8, 1, 3, 3, 3, 4, 0, {28, 5, 8, 12, 0}};
constexpr SampleSize seasonSize = {60, 12, 4, 6, 8, 5, 27, 20000, {240, 75, 12, 14, 3000000}};

/// What a kart has driven since some moment.
struct Driven
{
    qint64 milliseconds = 0;
    int runs = 0;
    int laps = 0;
};

struct ServiceRecord
{
    int carIndex;
    int operation;
    qint64 time;
    int state;
    QString comment;
};

class SampleGenerator final
{
public:
    SampleGenerator(HostConnection &connection, const SampleSize &size, quint32 seed, const QDateTime &now,
                    const SampleProgress &progress)
        : m_connection(connection)
        , m_size(size)
        , m_now(now)
        , m_progress(progress)
        , m_random(seed)
        , m_models(SampleCatalogue::models())
        , m_operations(SampleCatalogue::operations(size.operations))
        , m_laps(size.driving, lapTimes(), m_random)
    {
    }

    SampleOutcome make();

private:
    QVector<int> lapTimes() const;
    int modelOf(int carIndex) const { return int(carIndex * m_models.size() / m_size.cars); }
    int limit(int catalogueLimit, int model) const;
    bool isOverrun(int carIndex, int operation, const Driven &driven, double share) const;

    bool writeCars();
    bool writePeople();
    bool writeSchedule();
    bool writeLaps();
    void planServices();
    void planServicesOf(int carIndex, int operation);
    void planOpenWork();
    void fillUpHistory();
    bool writeServices();

    template<typename List> auto anyOf(const List &list) { return list.at(m_random.bounded(list.size())); }

    HostConnection &m_connection;
    const SampleSize m_size;
    const QDateTime m_now;
    const SampleProgress &m_progress;
    QRandomGenerator m_random;
    const QVector<SampleCatalogue::Model> m_models;
    const QVector<SampleCatalogue::Operation> m_operations;
    LapGenerator m_laps;
    QVector<ServiceRecord> m_services;
    bool m_cancelled = false;
};

QVector<int> SampleGenerator::lapTimes() const
{
    QVector<int> times;
    for (int car = 0; car < m_size.cars; ++car)
        times.append(m_models.at(modelOf(car)).lapMilliseconds);
    return times;
}

/// Rounds limits to the precision in which users enter them.
int SampleGenerator::limit(int catalogueLimit, int model) const
{
    const int unit = catalogueLimit >= 1800 ? 360 : (catalogueLimit >= 100 ? 10 : 1);
    const double value = catalogueLimit * m_size.limitFactor * m_models.at(model).endurance;
    return int(std::lround(value / unit)) * unit;
}

/// True if one of the limits is used up to the given share.
bool SampleGenerator::isOverrun(int carIndex, int operation, const Driven &driven, double share) const
{
    const int model = modelOf(carIndex);
    const SampleCatalogue::Operation &rule = m_operations.at(operation);
    const auto reaches = [share](double value, int bound) { return bound != 0 && value >= share * bound; };
    return reaches(double(driven.milliseconds) / 1000, limit(rule.timeLimit, model))
        || reaches(driven.runs, limit(rule.runsLimit, model))
        || reaches(driven.laps, limit(rule.lapsLimit, model));
}

SampleOutcome SampleGenerator::make()
{
    HostTransaction transaction(m_connection);
    const bool written =
        transaction.isActive() && writeCars() && writePeople() && writeSchedule() && writeLaps();
    if (!written)
        return m_cancelled ? SampleOutcome::Cancelled : SampleOutcome::Failed;
    planServices();
    planOpenWork();
    fillUpHistory();
    return writeServices() && transaction.commit() ? SampleOutcome::Done : SampleOutcome::Failed;
}

bool SampleGenerator::writeCars()
{
    for (int car = 0; car < m_size.cars; ++car) {
        const int id = firstCarId + car;
        const QUuid guid(m_random.generate(), quint16(id), 0x4000, 0x80, 0, 0, 0, 0, 0, 0, 0);
        const bool resting = car % (m_size.cars / m_size.resting) == m_size.cars / m_size.resting / 2;
        if (!m_connection.exec(QStringLiteral("INSERT INTO cars (id,num,name) VALUES (?,?,?)"),
                               {id, QString::number(car + 1), m_models.at(modelOf(car)).name})
            || !m_connection.exec(
                QStringLiteral("INSERT INTO host_cars (car_id,guid,available) VALUES (?,?,?)"),
                {id, guid.toString(QUuid::WithoutBraces), resting ? 0 : 1}))
            return false;
    }
    return true;
}

bool SampleGenerator::writePeople()
{
    int number = 0;
    for (const SampleCatalogue::Person &person : SampleCatalogue::people()) {
        const int id = firstPersonId + number;
        if (!m_connection.exec(
                QStringLiteral("INSERT INTO personal (id,last_name,first_name,mid_name) VALUES (?,?,?,?)"),
                {id, person.lastName, person.firstName, person.midName})
            || !m_connection.exec(
                QStringLiteral("INSERT INTO host_personal (person_id,service_code) VALUES (?,?)"),
                {id, QString::number(firstServiceCode + number)}))
            return false;
        ++number;
    }
    return true;
}

bool SampleGenerator::writeSchedule()
{
    for (int operation = 0; operation < m_operations.size(); ++operation) {
        const SampleCatalogue::Operation &rule = m_operations.at(operation);
        if (!m_connection.exec(
                QStringLiteral("INSERT INTO service_operations (id,operation_name) VALUES (?,?)"),
                {operation + 1, rule.name}))
            return false;
        for (int model = 0; model < m_models.size(); ++model) {
            if (!m_connection.exec(QStringLiteral("INSERT INTO service_reglament "
                                                  "(model,operation_id,time_limit,runs_limit,laps_limit) "
                                                  "VALUES (?,?,?,?,?)"),
                                   {m_models.at(model).name, operation + 1, limit(rule.timeLimit, model),
                                    limit(rule.runsLimit, model), limit(rule.lapsLimit, model)}))
                return false;
        }
    }
    return true;
}

bool SampleGenerator::writeLaps()
{
    // Inserting three million laps takes half the time if the index is created afterwards.
    const QString index =
        m_connection.value(QStringLiteral("SELECT sql FROM sqlite_master WHERE name='laps_by_car'"))
            .toString();
    if (!index.isEmpty() && !m_connection.exec(QStringLiteral("DROP INDEX laps_by_car")))
        return false;
    QSqlQuery insert = m_connection.prepared(
        QStringLiteral("INSERT INTO laps (car_id,run_id,lap_timestamp,sum_sectors) VALUES (?,?,?,?)"));
    TimestampFormatter timestamp;
    const int expected = m_laps.expectedLaps();
    const bool driven = m_laps.generate(m_now, [&](const GeneratedLap &lap, int lapsSoFar) {
        insert.bindValue(0, firstCarId + lap.carIndex);
        insert.bindValue(1, lap.runId);
        insert.bindValue(2, timestamp.format(lap.finished));
        insert.bindValue(3, lap.milliseconds);
        if (!m_connection.exec(insert))
            return false;
        const bool report = lapsSoFar % 10000 == 0;
        m_cancelled = report && !m_progress(std::min(90, int(90LL * lapsSoFar / expected)));
        return !m_cancelled;
    });
    insert.finish();
    return driven && (index.isEmpty() || m_connection.exec(index));
}

void SampleGenerator::planServices()
{
    for (int car = 0; car < m_size.cars; ++car) {
        for (int operation = 0; operation < m_operations.size(); ++operation) {
            const bool neverDone = m_random.bounded(100) < 4;
            if (!neverDone)
                planServicesOf(car, operation);
        }
    }
}

/// Goes back from today: the last service is a share of the limit ago, the earlier ones about a whole limit
/// apart.
void SampleGenerator::planServicesOf(int carIndex, int operation)
{
    const QVector<CarRun> &runs = m_laps.runsOf(carIndex);
    const bool overdue = m_random.bounded(100) < 15;
    double share = overdue ? 1.1 + m_random.generateDouble() * 0.4 : 0.1 + m_random.generateDouble() * 0.65;
    Driven driven;
    int records = 0;
    for (int run = int(runs.size()) - 1; run > 0 && records < m_size.history; --run) {
        driven.milliseconds += runs.at(run).end - runs.at(run).start;
        ++driven.runs;
        driven.laps += runs.at(run).laps;
        if (!isOverrun(carIndex, operation, driven, share))
            continue;
        m_services.append({carIndex, operation + 1, runs.at(run - 1).end + mechanicsDelay, doneState,
                           anyOf(SampleCatalogue::remarks())});
        ++records;
        driven = {};
        share = 0.85 + m_random.generateDouble() * 0.2;
    }
    if (records == 0 && !runs.isEmpty())
        m_services.append(
            {carIndex, operation + 1, runs.first().start - mechanicsDelay, doneState, QString()});
}

void SampleGenerator::planOpenWork()
{
    const qint64 now = m_now.toMSecsSinceEpoch();
    const qint64 hour = 3600 * 1000;
    const QVector<QString> complaints = SampleCatalogue::complaints();
    for (int number = 0; number < m_size.openComplaints; ++number) {
        const int car = number * m_size.cars / m_size.openComplaints + 1;
        m_services.append({car, complaintOperation, now - (number * 7 + 2) * hour, openState,
                           complaints.at(number % complaints.size())});
        const int repaired = (car + 3) % m_size.cars;
        m_services.append({repaired, complaintOperation, now - (number * 11 + 30) * hour, doneState,
                           complaints.at((number + 3) % complaints.size())});
    }
    for (int number = 0; number < m_size.openOperations; ++number) {
        const int car = (number * m_size.cars / m_size.openOperations + 4) % m_size.cars;
        m_services.append({car, int(number % m_operations.size() + 1), now - (number * 5 + 1) * hour,
                           openState, QStringLiteral("сделать до следующей смены")});
    }
}

/// Adds old closed complaints until the service log has the planned number of records.
void SampleGenerator::fillUpHistory()
{
    const qint64 oldest = m_now.addDays(-m_size.driving.days).toMSecsSinceEpoch();
    while (m_services.size() < m_size.recordCount) {
        const qint64 time = oldest + qint64(m_random.generateDouble() * 30 * 24 * 3600 * 1000);
        m_services.append({m_random.bounded(m_size.cars), complaintOperation, time, doneState,
                           anyOf(SampleCatalogue::complaints())});
    }
}

bool SampleGenerator::writeServices()
{
    std::stable_sort(m_services.begin(), m_services.end(),
                     [](const ServiceRecord &a, const ServiceRecord &b) { return a.time < b.time; });
    const QVector<SampleCatalogue::Person> people = SampleCatalogue::people();
    TimestampFormatter timestamp;
    for (const ServiceRecord &record : qAsConst(m_services)) {
        const int person = m_random.bounded(int(people.size()));
        const SampleCatalogue::Person &by = people.at(person);
        const QString name =
            QStringList {by.lastName, by.firstName, by.midName}.join(QLatin1Char(' ')).trimmed();
        if (!m_connection.exec(
                QStringLiteral("INSERT INTO maintainance (car_id,operation_id,operation_time,person_id,"
                               "person_name,comment,operation_state) VALUES (?,?,?,?,?,?,?)"),
                {firstCarId + record.carIndex, record.operation, timestamp.format(record.time),
                 firstPersonId + person, name, record.comment, record.state}))
            return false;
    }
    return m_progress(100);
}

} // namespace

SampleOutcome generateSampleData(HostConnection &connection, SampleKind kind, quint32 seed,
                                 const QDateTime &now, const SampleProgress &progress)
{
    if (kind == SampleKind::Empty)
        return SampleOutcome::Done;
    const SampleSize &size = kind == SampleKind::Season ? seasonSize : sampleSize;
    return SampleGenerator(connection, size, seed, now, progress).make();
}
