#pragma once

#include <QByteArray>
#include <QHash>
#include <QVector>

/// Records what SQLite does to the files of a database, for every connection of this process that is opened
/// after install(). The operations of all threads are in one order.
namespace RecordedFiles {

/// One operation on a file, on the folder, or a note of the test.
struct Event
{
    enum Kind { Create, Write, Truncate, Sync, Delete, SyncFolder, Note };

    Kind kind;
    int file; ///< each created file has a number of its own; -1 for SyncFolder and Note
    QByteArray text; ///< of the created or deleted file: its name; the bytes written; the note
    qint64 at; ///< where the bytes were written, or the size after a truncation
};

/// The files of a folder and all that was done to them since.
struct History
{
    QHash<int, QByteArray> contents; ///< by number, before the first event
    QHash<QByteArray, int> numbers; ///< by name, before the first event
    QVector<Event> events;
};

/// Replaces SQLite's default VFS by one that records. Call once per process, before the first connection.
void install();

/// Forgets what was recorded, and begins with the files as they are. No write may be under way.
void start();
/// Appends a note. Does nothing before start().
void note(const QByteArray &text);
/// Ends the recording.
History take();

} // namespace RecordedFiles
