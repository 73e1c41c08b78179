#pragma once

#include <QDir>
#include <QFile>
#include <QPixmapCache>

#include <malloc.h>

/// What this process holds at the moment.
struct Resources
{
    qint64 heapBytes;
    qint64 residentBytes;
    int threads;
    int handles; ///< open files

    static Resources now()
    {
        QPixmapCache::clear(); // Qt keeps scaled icons for a while
        QFile statm("/proc/self/statm");
        if (!statm.open(QIODevice::ReadOnly))
            qFatal("There is no /proc");
        const qint64 pages = statm.readAll().split(' ').value(1).toLongLong();
        const struct mallinfo2 heap = mallinfo2();
        return {qint64(heap.uordblks + heap.hblkhd), pages * 4096, entriesOf("/proc/self/task"),
                entriesOf("/proc/self/fd")};
    }

private:
    static int entriesOf(const QString &folder)
    {
        return int(QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size());
    }
};
