#include "trackledger.h"

#include <QDateTime>
#include <QJsonObject>

#include <algorithm>
#include <numeric>

namespace {

constexpr size_t lapsPerKartAndDay = 260;
constexpr size_t recordsPerDay = 250;
constexpr size_t firstRecords = 1000;
constexpr size_t recordsOfAnOperation = 250; // of a kart

QString utcText(qint64 time, const char *format)
{
    return QDateTime::fromMSecsSinceEpoch(time, Qt::UTC).toString(format);
}

bool exceeds(int figure, int limit)
{
    return limit != 0 && figure > limit;
}

} // namespace

TrackLedger::TrackLedger(int days) : m_lapsPerKart(lapsPerKartAndDay * size_t(days))
{
    m_records.resize(firstRecords + recordsPerDay * size_t(days));
    m_records.resize(1);
    m_records.front().exists = false;
}

void TrackLedger::addKart(const Kart &kart)
{
    m_karts.append(kart);
    m_recordsOf.emplace_back();
    m_laps.emplace_back(m_lapsPerKart); // written to, so that the memory is resident
    m_laps.back().clear();
}

int TrackLedger::addOperation(const QString &name)
{
    m_operations.insert(++m_lastOperation, name);
    return m_lastOperation;
}

void TrackLedger::setLimits(const QString &model, int opId, const Limits &limits)
{
    m_limits[model][opId] = limits;
}

void TrackLedger::switchKart(int id)
{
    m_karts[id - 1].isAvailable = !m_karts.at(id - 1).isAvailable;
}

void TrackLedger::addLap(int carId, int runId, qint64 finished, int milliseconds)
{
    std::vector<Lap> &laps = m_laps[size_t(carId - 1)];
    const Lap before = laps.empty() ? Lap {0, 0, 0, 0} : laps.back();
    laps.push_back(
        {finished, before.milliseconds + milliseconds, runId, before.runs + (runId == before.run ? 0 : 1)});
}

int TrackLedger::addRecord(const Record &record)
{
    m_records.push_back(record);
    std::vector<int> &ids = m_recordsOf[size_t(record.carId - 1)][record.opId];
    ids.reserve(recordsOfAnOperation);
    ids.push_back(lastRecord());
    return lastRecord();
}

int TrackLedger::recordCount() const
{
    return int(std::count_if(m_records.begin(), m_records.end(),
                             [](const Record &record) { return record.exists; }));
}

int TrackLedger::latest(int carId, int opId) const
{
    int found = none;
    for (const int id : m_recordsOf[size_t(carId - 1)].value(opId)) {
        if (record(id).exists && (found == none || record(found).time < record(id).time))
            found = id;
    }
    return found;
}

std::vector<int> TrackLedger::journal() const
{
    std::vector<int> ids(m_records.size());
    std::iota(ids.begin(), ids.end(), 0);
    ids.erase(std::remove_if(ids.begin(), ids.end(), [this](int id) { return !record(id).exists; }),
              ids.end());
    std::sort(ids.begin(), ids.end(), [this](int a, int b) { return record(a).time > record(b).time; });
    return ids;
}

bool TrackLedger::isUsed(qint64 time) const
{
    return std::any_of(m_records.begin(), m_records.end(),
                       [time](const Record &record) { return record.time == time; });
}

QStringList TrackLedger::models() const
{
    QStringList models;
    for (const Kart &kart : m_karts)
        models.append(kart.model);
    models.removeDuplicates();
    return models;
}

int TrackLedger::lapCount() const
{
    return int(std::accumulate(m_laps.begin(), m_laps.end(), size_t(0),
                               [](size_t sum, const std::vector<Lap> &laps) { return sum + laps.size(); }));
}

QString TrackLedger::fileTime(qint64 time)
{
    return utcText(time, "yyyy-MM-ddThh:mm:ss.zzzZ");
}

QString TrackLedger::shownTime(qint64 time)
{
    return QDateTime::fromMSecsSinceEpoch(time).toString("dd.MM.yyyy hh:mm");
}

TrackLedger::Driving TrackLedger::drivenSince(int carId, qint64 time) const
{
    const std::vector<Lap> &laps = m_laps[size_t(carId - 1)];
    const auto first = std::upper_bound(laps.begin(), laps.end(), time,
                                        [](qint64 moment, const Lap &lap) { return moment < lap.finished; });
    if (first == laps.end())
        return {};
    const Lap before = first == laps.begin() ? Lap {0, 0, 0, 0} : *(first - 1);
    // The run during which the work was done counts, too.
    const int runs = laps.back().runs - before.runs + (first->run == before.run ? 1 : 0);
    return {int((laps.back().milliseconds - before.milliseconds) / 1000), runs, int(laps.end() - first)};
}

/// In the order of the operations' ids.
std::vector<int> TrackLedger::latestOfEach(int carId) const
{
    std::vector<int> ids;
    for (const int opId : m_recordsOf[size_t(carId - 1)].keys()) {
        const int id = latest(carId, opId);
        if (id != none)
            ids.push_back(id);
    }
    return ids;
}

bool TrackLedger::isDue(int carId, int recordId) const
{
    const Limits limit = limits(kart(carId).model, record(recordId).opId);
    const Driving driven = drivenSince(carId, record(recordId).time);
    return exceeds(driven.seconds, limit.seconds) || exceeds(driven.runs, limit.runs)
        || exceeds(driven.laps, limit.laps);
}

/// The window knows no limits of operations that were removed.
bool TrackLedger::needsService(int carId) const
{
    const std::vector<int> latest = latestOfEach(carId);
    return std::any_of(latest.begin(), latest.end(), [&](int id) {
        return record(id).isOpen || (m_operations.contains(record(id).opId) && isDue(carId, id));
    });
}

QJsonArray TrackLedger::statuses() const
{
    QJsonArray karts;
    for (int carId = 1; carId <= kartCount(); ++carId) {
        QJsonObject operations;
        for (const int id : latestOfEach(carId)) {
            const Driving driven = drivenSince(carId, record(id).time);
            operations.insert(QString::number(record(id).opId),
                              QJsonObject {{"tt", driven.seconds},
                                           {"tl", driven.laps},
                                           {"tr", driven.runs},
                                           {"dt", utcText(record(id).time, "yyyy-MM-ddThh:mm")}});
        }
        karts.append(QJsonObject {{"carId", carId}, {"opsStatus", operations}});
    }
    return karts;
}

QJsonArray TrackLedger::pending() const
{
    QJsonArray list;
    for (int carId = 1; carId <= kartCount(); ++carId) {
        const QMap<int, Limits> limits = m_limits.value(kart(carId).model);
        for (const int id : latestOfEach(carId)) {
            const Record &latest = record(id);
            if (latest.opId == complaint) {
                if (latest.isOpen)
                    list.append(pendingOf(carId, id, commentText(latest.comment)));
            } else if (limits.contains(latest.opId) && (latest.isOpen || isDue(carId, id))) {
                list.append(pendingOf(carId, id, m_operations.value(latest.opId, "")));
            }
        }
    }
    return list;
}

QJsonObject TrackLedger::pendingOf(int carId, int recordId, const QString &name) const
{
    return {{"carId", carId},
            {"carNum", kart(carId).number},
            {"carModel", kart(carId).model},
            {"opId", record(recordId).opId},
            {"opName", name},
            {"opDateTime", utcText(record(recordId).time, "yyyy-MM-ddThh:mm")},
            {"localId", recordId}};
}

QStringList TrackLedger::maintenanceTitles() const
{
    return QStringList {"#", "Модель", "Номер"} + m_operations.values();
}

QStringList TrackLedger::maintenanceRows() const
{
    QStringList rows;
    for (int carId = 1; carId <= kartCount(); ++carId) {
        QStringList cells {kart(carId).model, kart(carId).number};
        for (auto operation = m_operations.begin(); operation != m_operations.end(); ++operation)
            cells.append(cell(carId, operation.key()));
        rows.append(cells.join('|'));
    }
    return rows;
}

QString TrackLedger::cell(int carId, int opId) const
{
    const int id = latest(carId, opId);
    if (id == none)
        return {};
    const Driving driven = drivenSince(carId, record(id).time);
    const QString since = QString::asprintf("\n%.1f ", driven.seconds / 3600.0)
        + QString("ч., %1 з., %2 кр.").arg(driven.runs).arg(driven.laps);
    return shownTime(record(id).time) + (driven.laps == 0 ? QString() : since);
}

QStringList TrackLedger::numbersToService() const
{
    QStringList numbers;
    for (int carId = 1; carId <= kartCount(); ++carId) {
        if (needsService(carId))
            numbers.append(kart(carId).number);
    }
    return numbers;
}

QStringList TrackLedger::numbers() const
{
    QStringList numbers;
    for (const Kart &kart : m_karts)
        numbers.append(kart.number);
    return numbers;
}

QStringList TrackLedger::numbersAvailable() const
{
    QStringList numbers;
    for (const Kart &kart : m_karts) {
        if (kart.isAvailable)
            numbers.append(kart.number);
    }
    return numbers;
}

QStringList TrackLedger::logRows(int most) const
{
    QStringList rows;
    for (const int id : journal()) {
        if (rows.size() == most)
            break;
        const Record &entry = record(id);
        rows.append(QStringList {QString::number(rows.size() + 1), kart(entry.carId).model,
                                 kart(entry.carId).number, shownTime(entry.time),
                                 m_operations.value(entry.opId), personName(entry.personId),
                                 commentText(entry.comment)}
                        .join('|'));
    }
    return rows;
}

QStringList TrackLedger::recordRows() const
{
    QStringList rows;
    for (int id = 1; id <= lastRecord(); ++id) {
        const Record &entry = record(id);
        if (!entry.exists)
            continue;
        rows.append(QStringList {
            QString::number(id), QString::number(entry.carId), QString::number(entry.opId),
            fileTime(entry.time), QString::number(entry.personId), personName(entry.personId),
            commentText(entry.comment), entry.isOpen ? "0" : "1", QString::number(entry.remoteId)}
                        .join('|'));
    }
    return rows;
}

QStringList TrackLedger::limitRows() const
{
    QStringList rows;
    for (auto model = m_limits.begin(); model != m_limits.end(); ++model) {
        for (auto limit = model->begin(); limit != model->end(); ++limit)
            rows.append(QString("%1|%2|%3|%4|%5")
                            .arg(model.key())
                            .arg(limit.key())
                            .arg(limit->seconds)
                            .arg(limit->runs)
                            .arg(limit->laps));
    }
    rows.sort();
    return rows;
}

QStringList TrackLedger::lapRows() const
{
    QStringList rows;
    for (size_t index = 0; index < m_laps.size(); ++index) {
        const Lap last = m_laps[index].empty() ? Lap {0, 0, 0, 0} : m_laps[index].back();
        rows.append(QString("%1|%2|%3|%4")
                        .arg(index + 1)
                        .arg(m_laps[index].size())
                        .arg(last.milliseconds)
                        .arg(last.runs));
    }
    return rows;
}
