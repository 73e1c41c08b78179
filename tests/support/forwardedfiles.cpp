#include "support/forwardedfiles.h"

#include <cstdlib>

namespace {

sqlite3_file *realFile(sqlite3_file *file)
{
    return ForwardedFiles::File::of(file)->real();
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
    return realFile(file)->pMethods->xWrite(realFile(file), data, size, at);
}

int truncateFile(sqlite3_file *file, sqlite3_int64 size)
{
    return realFile(file)->pMethods->xTruncate(realFile(file), size);
}

int syncFile(sqlite3_file *file, int flags)
{
    return realFile(file)->pMethods->xSync(realFile(file), flags);
}

int fileSize(sqlite3_file *file, sqlite3_int64 *size)
{
    return realFile(file)->pMethods->xFileSize(realFile(file), size);
}

int lockFile(sqlite3_file *file, int level)
{
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

int mapShared(sqlite3_file *file, int region, int size, int extend, void volatile **memory)
{
    return realFile(file)->pMethods->xShmMap(realFile(file), region, size, extend, memory);
}

int lockShared(sqlite3_file *file, int offset, int count, int flags)
{
    return realFile(file)->pMethods->xShmLock(realFile(file), offset, count, flags);
}

void barrier(sqlite3_file *file)
{
    realFile(file)->pMethods->xShmBarrier(realFile(file));
}

int unmapShared(sqlite3_file *file, int remove)
{
    return realFile(file)->pMethods->xShmUnmap(realFile(file), remove);
}

} // namespace

sqlite3_vfs *ForwardedFiles::system()
{
    static sqlite3_vfs *const vfs = sqlite3_vfs_find(nullptr);
    return vfs;
}

sqlite3_io_methods ForwardedFiles::methods()
{
    // Version 2: without mapped files, which could be written unseen.
    return {2,
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
            mapShared,
            lockShared,
            barrier,
            unmapShared,
            nullptr,
            nullptr};
}

void ForwardedFiles::install(const char *name, Open open, Delete remove)
{
    static sqlite3_vfs vfs = *system();
    vfs.pNext = nullptr;
    vfs.zName = name;
    vfs.szOsFile = int(sizeof(File)) + system()->szOsFile;
    vfs.xOpen = open;
    vfs.xDelete = remove;
    if (sqlite3_vfs_register(&vfs, 1) != SQLITE_OK)
        std::abort();
}
