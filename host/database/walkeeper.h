#pragma once

#include <QString>

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

/// Does in other threads what makes commits to a file with a write-ahead log slow: waits for the disk, and
/// moves the log's content into the file. The connection that writes must not do so itself
/// (synchronous=NORMAL, wal_autocheckpoint=0): a commit then survives the kill of the process at once, and a
/// power cut after the next sync().
class WalKeeper final
{
public:
    explicit WalKeeper(const QString &path);
    /// Syncs what has been committed.
    ~WalKeeper();
    WalKeeper(const WalKeeper &) = delete;
    WalKeeper &operator=(const WalKeeper &) = delete;

    /// Something has been committed: it is synced within a second.
    void touch();
    /// For any thread: waits until all that has been committed before is on the disk. False if it cannot be
    /// synced. Threads that wait at the same time share one sync.
    bool sync();

private:
    void run();
    bool syncFile();
    void moveIntoFile();

    const QString m_path;
    const std::string m_logPath;
    const std::string m_folder;
    std::mutex m_mutex;
    std::condition_variable m_synced;
    std::uint64_t m_begun = 0; // syncs
    std::uint64_t m_done = 0;
    std::uint64_t m_failed = 0; // the latest that failed
    bool m_isSyncing = false;
    bool m_isFolderSynced = false;
    std::condition_variable m_wake;
    bool m_isTouched = false;
    bool m_isOver = false;
    std::thread m_thread;
};
