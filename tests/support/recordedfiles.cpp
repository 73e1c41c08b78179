#include "support/recordedfiles.h"

#include "support/forwardedfiles.h"

#include <QFile>

#include <cstdlib>
#include <mutex>

using ForwardedFiles::File;
using RecordedFiles::Event;

namespace {

sqlite3_vfs *const osFiles = ForwardedFiles::system();

using OpenFolder = int (*)(const char *, int *);
OpenFolder osOpenFolder = nullptr;

// Held during an operation: what is recorded first is done first. A sync of the folder is part of another
// operation.
std::recursive_mutex mutex;
bool isRecording = false;
QHash<QByteArray, int> numbers; // of all recorded files, by path
int fileCount = 0;
RecordedFiles::History history;

constexpr int notRecorded = -1;

File *ours(sqlite3_file *file)
{
    return File::of(file);
}

sqlite3_file *realFile(sqlite3_file *file)
{
    return ours(file)->real();
}

void record(Event::Kind kind, int file, const QByteArray &text = {}, qint64 at = 0)
{
    if (isRecording && (file != notRecorded || kind == Event::SyncFolder || kind == Event::Note))
        history.events.append({kind, file, text, at});
}

int writeFile(sqlite3_file *file, const void *data, int size, sqlite3_int64 at)
{
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    record(Event::Write, ours(file)->number, QByteArray(static_cast<const char *>(data), size), at);
    return realFile(file)->pMethods->xWrite(realFile(file), data, size, at);
}

int truncateFile(sqlite3_file *file, sqlite3_int64 size)
{
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    record(Event::Truncate, ours(file)->number, {}, size);
    return realFile(file)->pMethods->xTruncate(realFile(file), size);
}

int syncFile(sqlite3_file *file, int flags)
{
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    record(Event::Sync, ours(file)->number);
    return realFile(file)->pMethods->xSync(realFile(file), flags);
}

const sqlite3_io_methods methods = [] {
    sqlite3_io_methods changed = ForwardedFiles::methods();
    changed.xWrite = writeFile;
    changed.xTruncate = truncateFile;
    changed.xSync = syncFile;
    return changed;
}();

/// Of a file that is opened; a new number if it was just created.
int numberOf(const char *name, int flags, bool isNew)
{
    constexpr int recorded = SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_WAL;
    if (!name || !(flags & recorded))
        return notRecorded;
    if (isNew || !numbers.contains(name))
        numbers.insert(name, fileCount++);
    const int number = numbers.value(name);
    if (isNew)
        record(Event::Create, number, name);
    return number;
}

int openFile(sqlite3_vfs *, const char *name, sqlite3_file *file, int flags, int *outFlags)
{
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    const bool wasThere = name && QFile::exists(QFile::decodeName(name));
    file->pMethods = nullptr;
    const int result = osFiles->xOpen(osFiles, name, realFile(file), flags, outFlags);
    if (!realFile(file)->pMethods)
        return result;
    file->pMethods = &methods;
    ours(file)->number = numberOf(name, flags, !wasThere && result == SQLITE_OK);
    return result;
}

int deleteFile(sqlite3_vfs *, const char *name, int syncFolder)
{
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    const auto number = numbers.constFind(name);
    if (number != numbers.cend() && QFile::exists(QFile::decodeName(name)))
        record(Event::Delete, *number, name);
    return osFiles->xDelete(osFiles, name, syncFolder);
}

/// SQLite opens a folder only to sync it.
int openFolder(const char *name, int *descriptor)
{
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    record(Event::SyncFolder, notRecorded);
    return osOpenFolder(name, descriptor);
}

} // namespace

void RecordedFiles::install()
{
    osOpenFolder = reinterpret_cast<OpenFolder>(osFiles->xGetSystemCall(osFiles, "openDirectory"));
    const auto hook = reinterpret_cast<sqlite3_syscall_ptr>(openFolder);
    if (!osOpenFolder || osFiles->xSetSystemCall(osFiles, "openDirectory", hook) != SQLITE_OK)
        std::abort();
    ForwardedFiles::install("recording", openFile, deleteFile);
}

void RecordedFiles::start()
{
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    history = {};
    for (auto entry = numbers.cbegin(); entry != numbers.cend(); ++entry) {
        QFile file(QFile::decodeName(entry.key()));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        history.numbers.insert(entry.key(), entry.value());
        history.contents.insert(entry.value(), file.readAll());
    }
    isRecording = true;
}

void RecordedFiles::note(const QByteArray &text)
{
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    record(Event::Note, notRecorded, text);
}

RecordedFiles::History RecordedFiles::take()
{
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    isRecording = false;
    History taken;
    std::swap(taken, history);
    return taken;
}
