#include "support/faultyfiles.h"

#include <sqlite3.h>

#include <atomic>
#include <climits>
#include <cstdlib>

namespace {

sqlite3_vfs *const osFiles = sqlite3_vfs_find(nullptr);

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

/// SQLite's file object: ours first, the system's behind it in the same memory.
struct File
{
    sqlite3_file base;
    sqlite3_file *real() { return reinterpret_cast<sqlite3_file *>(this + 1); }
};

sqlite3_file *realFile(sqlite3_file *file)
{
    return reinterpret_cast<File *>(file)->real();
}

int closeFile(sqlite3_file *file)
{
    return realFile(file)->pMethods->xClose(realFile(file));
}

int readFile(sqlite3_file *file, void *data, int size, sqlite3_int64 at)
{
    return realFile(file)->pMethods->xRead(realFile(file), data, size, at);
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

int fileSize(sqlite3_file *file, sqlite3_int64 *size)
{
    return realFile(file)->pMethods->xFileSize(realFile(file), size);
}

int lockFile(sqlite3_file *file, int level)
{
    if (strikes(FaultyFiles::BusyLock))
        return SQLITE_BUSY;
    if (strikes(FaultyFiles::Lock))
        return SQLITE_IOERR_LOCK;
    return realFile(file)->pMethods->xLock(realFile(file), level);
}

int unlockFile(sqlite3_file *file, int level)
{
    return realFile(file)->pMethods->xUnlock(realFile(file), level);
}

int checkReservedLock(sqlite3_file *file, int *isReserved)
{
    return realFile(file)->pMethods->xCheckReservedLock(realFile(file), isReserved);
}

int fileControl(sqlite3_file *file, int operation, void *argument)
{
    return realFile(file)->pMethods->xFileControl(realFile(file), operation, argument);
}

int sectorSize(sqlite3_file *file)
{
    return realFile(file)->pMethods->xSectorSize(realFile(file));
}

int deviceCharacteristics(sqlite3_file *file)
{
    return realFile(file)->pMethods->xDeviceCharacteristics(realFile(file));
}

// Version 1: without the shared memory of write-ahead logging and without mapped files.
const sqlite3_io_methods methods = {1,
                                    closeFile,
                                    readFile,
                                    writeFile,
                                    truncateFile,
                                    syncFile,
                                    fileSize,
                                    lockFile,
                                    unlockFile,
                                    checkReservedLock,
                                    fileControl,
                                    sectorSize,
                                    deviceCharacteristics,
                                    nullptr,
                                    nullptr,
                                    nullptr,
                                    nullptr,
                                    nullptr,
                                    nullptr};

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
    static sqlite3_vfs faulty = *osFiles;
    faulty.pNext = nullptr;
    faulty.zName = "faulty";
    faulty.szOsFile = int(sizeof(File)) + osFiles->szOsFile;
    faulty.xOpen = openFile;
    faulty.xDelete = deleteFile;
    if (sqlite3_vfs_register(&faulty, 1) != SQLITE_OK)
        std::abort();
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
