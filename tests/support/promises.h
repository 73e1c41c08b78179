#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QStringList>
#include <QVector>

#include <functional>

/// What a host was told of the records, what it stored itself, and what the file must therefore hold. Learns
/// it from the notes of GarageAtWork, word by word:
///   batch COMMENT...       a batch of the remote side was sent; it is stored as a whole or not at all
///   archived COMMENT...    "remote_service_move_to_archive"
///   service COMMENT        "add_remote_service"
///   changing COMMENT       the record is about to be deleted, or to get another comment
///   deleted COMMENT        "remote_service_delete"
///   operations LIST        "service_ops_changed": ID:NAME; and so on, by id
///   laps RUN               the host stored laps of this run
class Promises final
{
public:
    /// What a file holds.
    struct Stored
    {
        QString integrity; ///< "ok", or what is wrong
        QSet<QByteArray> comments;
        QByteArray operations; ///< as in the notes
        QSet<QByteArray> runs; ///< that have laps
        int tornWrites = 0; ///< runs and limits that are there in part
    };

    /// Runs a statement and returns the first column of its rows; the message if it fails.
    using Select = std::function<QList<QByteArray>(const char *statement)>;
    static Stored stored(const Select &select);

    /// All notes, because a change of the operations is in the file before it is announced.
    explicit Promises(const QVector<QByteArray> &notes);

    /// Applies the next note.
    void advance();

    /// Empty if the file is intact and each write is in it as a whole or not at all.
    QStringList faults(const Stored &stored) const;
    /// The announcements that the file contradicts.
    QStringList broken(const Stored &stored) const;
    /// The number of the host's runs that are not in the file.
    int missingRuns(const Stored &stored) const;

private:
    void expect(const QByteArray &comment, const QByteArray &announcement);

    const QVector<QByteArray> m_notes;
    int m_count = 0;
    QVector<QList<QByteArray>> m_batches;
    QHash<QByteArray, QByteArray> m_present; ///< announcements by comment
    QHash<QByteArray, QByteArray> m_gone;
    QSet<QByteArray> m_changing;
    QVector<QByteArray> m_runs;
    QByteArray m_operations; ///< empty before the first announcement
    QByteArray m_nextOperations;
};
