#include "host/database/walkeeper.h"

#include "host/database/hostconnection.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <chrono>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr auto syncDelay = std::chrono::milliseconds(500);
constexpr qint64 longestLog = 4 << 20; // bytes

/// True if there is no such file.
bool syncPath(const std::string &path, int flags)
{
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags);
    if (file < 0)
        return errno == ENOENT;
    const bool isSynced = ::fsync(file) == 0;
    ::close(file);
    return isSynced;
}

} // namespace

WalKeeper::WalKeeper(const QString &path)
    : m_path(path)
    , m_logPath(QFile::encodeName(path + QLatin1String("-wal")).toStdString())
    , m_folder(QFile::encodeName(QFileInfo(path).absolutePath()).toStdString())
    , m_thread([this] { run(); })
{
}

WalKeeper::~WalKeeper()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isOver = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void WalKeeper::touch()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isTouched = true;
    }
    m_wake.notify_all();
}

bool WalKeeper::sync()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    // The one under way may have begun before the commit.
    const std::uint64_t next = m_begun + 1;
    while (m_done < next) {
        if (m_isSyncing) {
            m_synced.wait(lock);
            continue;
        }
        m_isSyncing = true;
        const std::uint64_t current = ++m_begun;
        lock.unlock();
        const bool isSynced = syncFile();
        lock.lock();
        m_isSyncing = false;
        m_done = current;
        if (!isSynced)
            m_failed = current;
        m_synced.notify_all();
    }
    return m_failed < next;
}

void WalKeeper::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_isOver) {
        m_wake.wait(lock, [this] { return m_isTouched || m_isOver; });
        // Commits often come in groups.
        m_wake.wait_for(lock, syncDelay, [this] { return m_isOver; });
        if (!std::exchange(m_isTouched, false))
            continue;
        lock.unlock();
        sync();
        moveIntoFile();
        lock.lock();
    }
}

/// One sync runs at a time. The log only: closing the file itself would drop the locks of SQLite in this
/// process.
bool WalKeeper::syncFile()
{
    if (!syncPath(m_logPath, 0))
        return false;
    m_isFolderSynced = m_isFolderSynced || syncPath(m_folder, O_DIRECTORY);
    return m_isFolderSynced;
}

void WalKeeper::moveIntoFile()
{
    if (QFileInfo(QString(m_path + QLatin1String("-wal"))).size() < longestLog)
        return;
    HostConnection connection(m_path);
    connection.value(QStringLiteral("PRAGMA wal_checkpoint(PASSIVE)"));
}
