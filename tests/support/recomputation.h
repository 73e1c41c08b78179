#pragma once

#include "support/testdatabase.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QRegularExpression>
#include <QSqlRecord>
#include <QVector>
#include <QtTest>

#include <algorithm>
#include <map>
#include <set>

/// The statistics of the loader, computed without its SQL and its code.
namespace Recomputed {

/// A value as the database holds it, ordered and compared as the database does.
struct Cell
{
    QVariant value;

    bool isNull() const { return value.isNull(); }
    bool isNumber() const { return value.type() == QVariant::LongLong || value.type() == QVariant::Double; }
    int rank() const { return isNull() ? 0 : isNumber() ? 1 : 2; }
    /// Numbers by value, texts by their UTF-8 bytes, every text after every number.
    bool operator<(const Cell &other) const
    {
        if (rank() != other.rank())
            return rank() < other.rank();
        return isNumber() ? value.toDouble() < other.value.toDouble()
                          : value.toString().toUtf8() < other.value.toString().toUtf8();
    }
    bool operator==(const Cell &other) const { return !(*this < other) && !(other < *this); }
};

using Row = QMap<QString, Cell>;
using Table = QVector<Row>;

inline Table readTable(const TestDatabase &database, const QString &name)
{
    Table table;
    QSqlQuery query = database.exec("SELECT * FROM " + name);
    const QSqlRecord record = query.record();
    while (query.next()) {
        Row row;
        for (int column = 0; column < record.count(); ++column)
            row.insert(record.fieldName(column), {query.value(column)});
        table.append(row);
    }
    return table;
}

/// Minutes in UTC, computed from the text; empty if it is no date-time.
inline QString utcMinutes(const Cell &cell)
{
    static const QRegularExpression pattern(
        "^(\\d{4})-(\\d\\d)-(\\d\\d)[T ](\\d\\d):(\\d\\d)(?::\\d\\d(?:\\.\\d{3})?)?(Z|[+-]\\d\\d:\\d\\d)?$");
    const QRegularExpressionMatch match = pattern.match(cell.value.toString());
    if (!match.hasMatch())
        return {};
    const auto part = [&match](int i) { return match.captured(i).toInt(); };
    QDateTime time(QDate(part(1), part(2), part(3)), QTime(part(4), part(5)), Qt::UTC);
    const QString zone = match.captured(6);
    if (zone.size() == 6) {
        const int minutes = zone.mid(1, 2).toInt() * 60 + zone.mid(4, 2).toInt();
        time = time.addSecs((zone.startsWith('-') ? 60 : -60) * minutes);
    }
    return time.toString("yyyy-MM-ddThh:mm");
}

/// One car and operation: what was driven since the latest record, and which records may be the latest.
struct Status
{
    int opId = 0;
    QString dateTime;
    int seconds = 0;
    int laps = 0;
    int runs = 0;
    QVector<Row> latest; ///< several if they bear the same time
};

/// The statistics computed from the plain tables, row by row.
class Recomputation
{
public:
    explicit Recomputation(const TestDatabase &database)
        : m_cars(readTable(database, "cars"))
        , m_records(readTable(database, "maintainance"))
        , m_laps(readTable(database, "laps"))
        , m_limits(readTable(database, "service_reglament"))
        , m_operations(readTable(database, "service_operations"))
    {
        std::map<std::pair<Cell, Cell>, Table> groups;
        for (const Row &record : m_records)
            groups[{record["car_id"], record["operation_id"]}].append(record);
        for (const auto &[key, records] : groups) {
            const Status status = statusOf(key.first, records);
            m_statuses[key.first.value.toInt()][status.opId] = status;
        }
    }

    /// Compares the message; if several records may be the latest, the message decides.
    void compare(const QJsonObject &message) const
    {
        const QJsonArray pending = message.value("servicePendingList").toArray();
        QJsonArray statuses;
        QJsonArray expectedPending;
        for (const Row &car : m_cars) {
            const std::map<int, Status> operations = statusesOf(car["id"].value.toInt());
            QJsonObject opsStatus;
            for (const auto &[opId, status] : operations) {
                opsStatus.insert(QString::number(opId),
                                 QJsonObject {{"tt", status.seconds},
                                              {"tl", status.laps},
                                              {"tr", status.runs},
                                              {"dt", status.dateTime}});
            }
            statuses.append(QJsonObject {{"carId", car["id"].value.toInt()}, {"opsStatus", opsStatus}});
            appendPending(car, operations, pending, expectedPending);
        }
        QCOMPARE(message.value("maintainanceStatus").toArray(), statuses);
        QCOMPARE(pending, expectedPending);
    }

    /// Of one car, by operation id.
    std::map<int, Status> statusesOf(int carId) const
    {
        const auto it = m_statuses.find(carId);
        return it == m_statuses.end() ? std::map<int, Status>() : it->second;
    }

    int carCount() const { return int(m_cars.size()); }
    const Table &records() const { return m_records; }

private:
    Status statusOf(const Cell &carId, const Table &records) const
    {
        Status status;
        status.opId = records.first()["operation_id"].value.toInt();
        Cell latest;
        for (const Row &record : records)
            latest = std::max(latest, record["operation_time"]);
        for (const Row &record : records) {
            if (record["operation_time"] == latest)
                status.latest.append(record);
        }
        status.dateTime = utcMinutes(latest);

        qint64 milliseconds = 0;
        double inexact = 0;
        bool allWhole = true;
        std::set<Cell> runs;
        for (const Row &lap : m_laps) {
            const Cell time = lap["sum_sectors"];
            if (carId.isNull() || !(lap["car_id"] == carId) || latest.isNull()
                || !(latest < lap["lap_timestamp"]) || !(Cell {QVariant(0LL)} < time))
                continue;
            ++status.laps;
            milliseconds += time.value.toLongLong();
            inexact += time.value.toDouble();
            allWhole = allWhole && time.value.type() == QVariant::LongLong;
            if (!lap["run_id"].isNull())
                runs.insert(lap["run_id"]);
        }
        status.seconds = allWhole ? int(milliseconds / 1000) : qRound(inexact / 1000);
        status.runs = int(runs.size());
        return status;
    }

    void appendPending(const Row &car, const std::map<int, Status> &operations, const QJsonArray &actual,
                       QJsonArray &expected) const
    {
        const auto report = [&](const Status &status, const QString &opName, auto isReported) {
            // What the message says at this place decides between records of the same time.
            const int claimed = actual.at(expected.size()).toObject().value("localId").toInt(-1);
            const Row *chosen = nullptr;
            bool mayBeAbsent = false;
            for (const Row &record : status.latest) {
                if (!isReported(record))
                    mayBeAbsent = true;
                else if (!chosen || record["id"].value.toInt() == claimed)
                    chosen = &record;
            }
            if (!chosen || (mayBeAbsent && (*chosen)["id"].value.toInt() != claimed))
                return;
            const QString name =
                status.opId == -1 && opName.isNull() ? (*chosen)["comment"].value.toString() : opName;
            expected.append(QJsonObject {{"carId", car["id"].value.toInt()},
                                         {"carNum", car["num"].value.toString()},
                                         {"carModel", car["name"].value.toString()},
                                         {"opId", status.opId},
                                         {"opName", name},
                                         {"opDateTime", status.dateTime},
                                         {"localId", (*chosen)["id"].value.toInt()}});
        };
        const auto isOpen = [](const Row &record) { return record["operation_state"].value.toInt() == 0; };

        const auto complaint = operations.find(-1);
        if (complaint != operations.end())
            report(complaint->second, QString(), isOpen);
        for (const auto &[opId, status] : operations) {
            const Row *limit = lastLimit(car["name"].value.toString(), opId);
            if (!limit)
                continue;
            const auto exceeds = [&](const char *column, int counter) {
                const int value = (*limit)[QLatin1String(column)].value.toInt();
                return value != 0 && counter > value;
            };
            const bool due = exceeds("laps_limit", status.laps) || exceeds("runs_limit", status.runs)
                || exceeds("time_limit", status.seconds);
            report(status, operationName((*limit)["operation_id"]),
                   [&](const Row &record) { return due || isOpen(record); });
        }
    }

    const Row *lastLimit(const QString &model, int opId) const
    {
        const Row *found = nullptr;
        for (const Row &limit : m_limits) {
            if (limit["model"].value.toString() == model && limit["operation_id"].value.toInt() == opId)
                found = &limit;
        }
        return found;
    }

    /// Empty, not null, for an operation that is not in the table.
    QString operationName(const Cell &opId) const
    {
        for (const Row &operation : m_operations) {
            if (!opId.isNull() && operation["id"] == opId)
                return operation["operation_name"].value.toString() + "";
        }
        return "";
    }

    const Table m_cars;
    const Table m_records;
    const Table m_laps;
    const Table m_limits;
    const Table m_operations;
    std::map<int, std::map<int, Status>> m_statuses;
};

} // namespace Recomputed
