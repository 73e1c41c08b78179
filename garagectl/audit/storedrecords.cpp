#include "garagectl/audit/storedrecords.h"

#include "garagectl/database/select.h"

namespace {

const QString selectRecords = QStringLiteral(
    "SELECT id, car_id, operation_id, operation_time, operation_state, remote_id FROM maintainance");
enum SelectRecords { Id, CarId, OperationId, Time, State, RemoteId };

QString minuteKey(int carId, int opId, const QString &time)
{
    constexpr int minuteLength = 16; // "2026-03-01T10:00"
    QString minute = time.left(minuteLength);
    minute.replace(QLatin1Char('T'), QLatin1Char(' '));
    return QStringLiteral("%1 %2 %3").arg(QString::number(carId), QString::number(opId), minute);
}

} // namespace

StoredRecords StoredRecords::read(const GarageDatabase &database)
{
    StoredRecords records;
    Select::forEachRow(database, selectRecords, [&records](const QSqlQuery &row) {
        const int index = int(records.m_rows.size());
        const Row stored {row.value(Id).toLongLong(),     row.value(CarId).toInt(),
                          row.value(OperationId).toInt(), row.value(Time).toString(),
                          row.value(State).toInt(),       row.value(RemoteId).toLongLong(),
                          !row.value(RemoteId).isNull()};
        records.m_rows.append(stored);
        records.m_byLocalId.insert(stored.localId, index);
        if (stored.isRemote)
            records.m_byRemoteId.insert(stored.remoteId, index);
        records.m_byMinute.insert(minuteKey(stored.carId, stored.opId, stored.time), index);
    });
    return records;
}

const StoredRecords::Row *StoredRecords::byLocalId(qint64 localId) const
{
    const auto found = m_byLocalId.constFind(localId);
    return found == m_byLocalId.cend() ? nullptr : &m_rows.at(*found);
}

QVector<const StoredRecords::Row *> StoredRecords::byRemoteId(qint64 remoteId) const
{
    QVector<const Row *> found;
    for (const int index : m_byRemoteId.values(remoteId))
        found.prepend(&m_rows.at(index));
    return found;
}

QVector<const StoredRecords::Row *> StoredRecords::matching(const RemoteServiceRecord &record) const
{
    QVector<const Row *> found = byRemoteId(record.remoteId);
    const Row *local = byLocalId(record.localId);
    if (local && !found.contains(local))
        found.append(local);
    return found;
}

QVector<const StoredRecords::Row *> StoredRecords::inMinute(int carId, int opId, const QString &minute) const
{
    QVector<const Row *> found;
    for (const int index : m_byMinute.values(minuteKey(carId, opId, minute)))
        found.prepend(&m_rows.at(index));
    return found;
}
