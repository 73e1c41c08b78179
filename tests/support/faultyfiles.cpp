#include "support/faultyfiles.h"

#include "support/forwardedfiles.h"

#include <atomic>
#include <climits>

namespace {

sqlite3_vfs *const osFiles = ForwardedFiles::system();

struct Fault
{
    std::atomic<int> operation {FaultyFiles::OperationCount};
    std::atomic<int> first {INT_MAX};
    std::atomic<int> last {INT_MAX};
    std::atomic<bool> struck {false};
    std::atomic<int> count {0}; ///< operations of its kind so far
} fault;

/// Counts an operation; true if it fails.
bool strikes(FaultyFiles::Operation operation)
{
    if (fault.operation != operation)
        return false;
    const int number = ++fault.count;
    if (number < fault.first || number > fault.last)
        return false;
    fault.struck = true;
    return true;
}

sqlite3_file *realFile(sqlite3_file *file)
{
    return ForwardedFiles::File::of(file)->real();
}

int writeFile(sqlite3_file *file, const void *data, int size, sqlite3_int64 at)
{
    if (strikes(FaultyFiles::Write))
        return SQLITE_IOERR_WRITE;
    return realFile(file)->pMethods->xWrite(realFile(file), data, size, at);
}

int truncateFile(sqlite3_file *file, sqlite3_int64 size)
{
    if (strikes(FaultyFiles::Truncate))
        return SQLITE_IOERR_TRUNCATE;
    return realFile(file)->pMethods->xTruncate(realFile(file), size);
}

int syncFile(sqlite3_file *, int)
{
    // The power stays on: really syncing would only take time.
    return strikes(FaultyFiles::Sync) ? SQLITE_IOERR_FSYNC : SQLITE_OK;
}

int lockFile(sqlite3_file *file, int level)
{
    if (strikes(FaultyFiles::BusyLock))
        return SQLITE_BUSY;
    if (strikes(FaultyFiles::Lock))
        return SQLITE_IOERR_LOCK;
    return realFile(file)->pMethods->xLock(realFile(file), level);
}

const sqlite3_io_methods methods = [] {
    sqlite3_io_methods changed = ForwardedFiles::methods();
    changed.iVersion = 1; // without the shared memory of write-ahead logging
    changed.xWrite = writeFile;
    changed.xTruncate = truncateFile;
    changed.xSync = syncFile;
    changed.xLock = lockFile;
    return changed;
}();

int openFile(sqlite3_vfs *, const char *name, sqlite3_file *file, int flags, int *outFlags)
{
    file->pMethods = nullptr;
    if ((flags & SQLITE_OPEN_MAIN_JOURNAL) && strikes(FaultyFiles::OpenJournal))
        return SQLITE_CANTOPEN;
    const int result = osFiles->xOpen(osFiles, name, realFile(file), flags, outFlags);
    if (realFile(file)->pMethods)
        file->pMethods = &methods;
    return result;
}

int deleteFile(sqlite3_vfs *, const char *name, int syncDirectory)
{
    if (strikes(FaultyFiles::Delete))
        return SQLITE_IOERR_DELETE;
    return osFiles->xDelete(osFiles, name, syncDirectory);
}

} // namespace

void FaultyFiles::install()
{
    ForwardedFiles::install("faulty", openFile, deleteFile);
}

void FaultyFiles::fail(Operation operation, int k, Duration duration)
{
    clear();
    fault.count = 0;
    fault.struck = false;
    fault.first = k;
    fault.last = duration == Once ? k : INT_MAX;
    fault.operation = operation;
}

void FaultyFiles::clear()
{
    fault.operation = OperationCount;
}

bool FaultyFiles::hasStruck()
{
    return fault.struck;
}
