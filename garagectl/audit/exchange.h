#pragma once

#include "data/servicerecordstore.h"
#include "garagectl/audit/messagelog.h"

/// What a message log says about service records.
struct Exchange
{
    struct Record
    {
        int line = 0; ///< of the message that brought it
        RemoteServiceRecord content;
    };
    /// Records that the remote side sent in one message.
    struct Batch
    {
        MessageLog::Message message;
        QVector<Record> records;
        bool isArchived = false;
    };
    struct Archived
    {
        int line = 0;
        qint64 remoteId = noId;
    };
    struct Deletion
    {
        int line = 0;
        qint64 remoteId = noId;
        int localId = noId;
    };
    /// A service that was recorded or completed in the window.
    struct Announcement
    {
        int line = 0;
        int carId = noId;
        int opId = noId;
        QString minute; ///< "2026-03-01 10:00", UTC; of a service that was recorded
        int localId = noId; ///< of a record that was completed
    };

    QVector<Batch> batches;
    QVector<Archived> archivedWithoutBatch; ///< the log does not have the message that brought them
    QVector<Deletion> deletions;
    QVector<Announcement> recorded;
    QVector<Announcement> completed;

    /// The records of the batches that were archived, in their order.
    QVector<Record> archivedRecords() const;

    static Exchange from(const MessageLog &log);
};

/// The requests in a log that got no answer, as "line 3: load_complete without read_cars_list".
QStringList unansweredRequests(const MessageLog &log);
