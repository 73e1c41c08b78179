#include "host/sessions/duetable.h"

#include "host/database/hostconnection.h"
#include "host/database/timestamp.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QHash>
#include <QJsonArray>

#include <algorithm>
#include <numeric>
#include <tuple>

namespace {

constexpr int widestCell = 44;
constexpr int complaintOperation = -1;

QString oneLine(const QString &text)
{
    const QString simple = text.simplified();
    return simple.size() <= widestCell ? simple : simple.left(widestCell - 1) + QChar(0x2026);
}

/// "3.4 h, runs 25, laps 310" without the parts that are 0.
QString amounts(int seconds, int runs, int laps)
{
    QStringList parts;
    if (seconds != 0)
        parts.append(DueTable::tr("%1 h").arg(seconds / 3600.0, 0, 'f', 1));
    if (runs != 0)
        parts.append(DueTable::tr("runs %1").arg(runs));
    if (laps != 0)
        parts.append(DueTable::tr("laps %1").arg(laps));
    return parts.isEmpty() ? QStringLiteral("—") : parts.join(QLatin1String(", "));
}

/// "tt", "tl" and "tr" of each operation, by car id.
QHash<int, QJsonObject> drivenByCar(const QJsonArray &status)
{
    QHash<int, QJsonObject> driven;
    for (const QJsonValue &car : status)
        driven.insert(car.toObject().value(QLatin1String("carId")).toInt(-1),
                      car.toObject().value(QLatin1String("opsStatus")).toObject());
    return driven;
}

QVector<QJsonObject> sorted(const QJsonArray &dueList)
{
    QVector<QJsonObject> list;
    for (const QJsonValue &due : dueList)
        list.append(due.toObject());
    const auto key = [](const QJsonObject &due) {
        return std::make_tuple(due.value(QLatin1String("carModel")).toString(),
                               due.value(QLatin1String("carNum")).toString().toInt(),
                               due.value(QLatin1String("opId")).toInt());
    };
    std::stable_sort(list.begin(), list.end(),
                     [key](const QJsonObject &a, const QJsonObject &b) { return key(a) < key(b); });
    return list;
}

QStringList aligned(const QVector<QStringList> &rows)
{
    QVector<int> widths(rows.first().size(), 0);
    for (const QStringList &row : rows) {
        for (int column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths.at(column), int(row.at(column).size()));
    }
    QStringList lines;
    for (const QStringList &row : rows) {
        QString line;
        for (int column = 0; column < row.size(); ++column)
            line += row.at(column).leftJustified(widths.at(column) + 2);
        lines.append(line.trimmed());
    }
    const int total = std::accumulate(widths.begin(), widths.end(), 2 * int(widths.size() - 1));
    lines.insert(1, QString(total, QLatin1Char('-')));
    return lines;
}

} // namespace

QStringList DueTable::lines(const QJsonObject &pendingService) const
{
    const QJsonArray status = pendingService.value(QLatin1String("maintainanceStatus")).toArray();
    const QHash<int, QJsonObject> driven = drivenByCar(status);
    const QVector<QJsonObject> dueList =
        sorted(pendingService.value(QLatin1String("servicePendingList")).toArray());
    if (dueList.isEmpty())
        return {tr("No service is due. Karts: %1").arg(status.size())};

    QVector<QStringList> rows = {
        {tr("Model"), tr("Kart"), tr("Operation"), tr("Last done"), tr("Driven"), tr("Limit")}};
    for (const QJsonObject &due : dueList)
        rows.append(row(due, driven.value(due.value(QLatin1String("carId")).toInt(-1))));
    return QStringList {tr("Services due"), QString()} + aligned(rows)
        + QStringList {QString(), tr("Entries: %1, karts in all: %2").arg(dueList.size()).arg(status.size())};
}

QStringList DueTable::row(const QJsonObject &due, const QJsonObject &driven) const
{
    const QString model = due.value(QLatin1String("carModel")).toString();
    const int operation = due.value(QLatin1String("opId")).toInt(complaintOperation);
    const bool isComplaint = operation == complaintOperation;
    const QJsonObject sums = driven.value(QString::number(operation)).toObject();
    const QString name = oneLine(due.value(QLatin1String("opName")).toString());
    return {model,
            due.value(QLatin1String("carNum")).toString(),
            isComplaint ? oneLine(tr("Complaint: %1").arg(name)) : name,
            localTimeText(due.value(QLatin1String("opDateTime")).toString()),
            amounts(sums.value(QLatin1String("tt")).toInt(), sums.value(QLatin1String("tr")).toInt(),
                    sums.value(QLatin1String("tl")).toInt()),
            isComplaint ? QStringLiteral("—") : limitText(model, operation)};
}

QString DueTable::limitText(const QString &model, int operation) const
{
    QSqlQuery query =
        m_connection.query(QStringLiteral("SELECT time_limit,runs_limit,laps_limit FROM service_reglament "
                                          "WHERE model=? AND operation_id=?"),
                           {model, operation});
    if (!query.next())
        return QStringLiteral("—");
    return amounts(query.value(0).toInt(), query.value(1).toInt(), query.value(2).toInt());
}
