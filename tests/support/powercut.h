#pragma once

#include "support/recordedfiles.h"

#include <QMap>
#include <QRandomGenerator>

#include <functional>

/// What a power cut may leave of recorded files. Replays a history event by event; at each point it makes
/// folders as the disk may hold them.
///
/// What was synced stays. Of what was written to a file since its last sync each piece of 512 bytes may have
/// arrived or not, whatever its order; a longer file may hold zeros there. Truncations likewise. Which files
/// the folder names is certain only up to its own last sync: a file created since may be missing, a deleted
/// one may be back.
class PowerCut final
{
public:
    using Folder = QMap<QByteArray, QByteArray>; ///< contents by path

    explicit PowerCut(const RecordedFiles::History &history);

    /// Applies the next event, not a note.
    void apply(const RecordedFiles::Event &event);
    /// True if a cut at this point has one outcome only.
    bool isCertain() const;

    Folder withNothingUnsynced() const
    {
        return folder([](int) { return Nothing; }, nullptr);
    }
    Folder withEverything() const
    {
        return folder([](int) { return Everything; }, nullptr);
    }
    /// A random outcome: a beginning of the unsynced operations, any of them, or any pieces of them.
    Folder withRandomPart(QRandomGenerator &random) const;

private:
    enum Part { Nothing, Everything, RandomPieces };
    using Choice = std::function<Part(int)>; ///< by the number of the unsynced operation

    struct Change
    {
        RecordedFiles::Event event;
        int number; ///< among all events
    };
    struct File
    {
        QByteArray synced;
        QVector<Change> unsynced;
    };

    Folder folder(const Choice &choice, QRandomGenerator *random) const;
    QByteArray contentOf(const File &file, const Choice &choice, QRandomGenerator *random) const;

    QHash<int, File> m_files;
    QHash<QByteArray, int> m_syncedNames;
    QVector<Change> m_unsyncedNames;
    int m_count = 0;
};
