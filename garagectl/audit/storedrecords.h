#pragma once

#include "data/servicerecordstore.h"

#include <QHash>
#include <QVector>

/// The service records of a database, for look-ups by each of their ids.
class StoredRecords final
{
public:
    struct Row
    {
        qint64 localId = noId;
        int carId = noId;
        int opId = noId;
        QString time; ///< as stored
        int state = DoneState;
        qint64 remoteId = noId;
        bool isRemote = false; ///< has a remote id

        /// True if the row holds that record.
        bool holds(const RemoteServiceRecord &record) const
        {
            return carId == record.carId && opId == record.opId && time == record.opTime;
        }
    };

    /// Throws the QSqlError of a statement that fails.
    static StoredRecords read(const GarageDatabase &database);

    const QVector<Row> &rows() const { return m_rows; }
    const Row *byLocalId(qint64 localId) const;
    QVector<const Row *> byRemoteId(qint64 remoteId) const;
    /// The rows that a remote record would update.
    QVector<const Row *> matching(const RemoteServiceRecord &record) const;
    /// The rows of that car and operation in that minute, "2026-03-01 10:00".
    QVector<const Row *> inMinute(int carId, int opId, const QString &minute) const;

private:
    QVector<Row> m_rows;
    QHash<qint64, int> m_byLocalId;
    QMultiHash<qint64, int> m_byRemoteId;
    QMultiHash<QString, int> m_byMinute;
};
