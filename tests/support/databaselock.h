#pragma once

#include <QString>

#include <atomic>
#include <thread>

/// Another connection, of another thread, that holds the database's write lock for a while.
class DatabaseLock final
{
    Q_DISABLE_COPY(DatabaseLock)
public:
    enum Kind {
        Shared, ///< a reader: writers cannot commit
        Immediate, ///< writers wait, readers do not
        Exclusive ///< readers and writers wait
    };

    /// Returns once the lock is held. It is released after that time, or on destruction.
    DatabaseLock(const QString &path, Kind kind, int milliseconds);
    ~DatabaseLock();

    bool isHeld() const { return m_held; }

private:
    std::atomic<bool> m_held {false};
    std::atomic<bool> m_release {false};
    std::thread m_thread;
};
