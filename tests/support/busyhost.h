#pragma once

#include <QString>

#include <atomic>
#include <thread>

/// A thread that records laps as a host does: each transaction adds a run of 10 laps of kart 1.
class BusyHost final
{
    Q_DISABLE_COPY(BusyHost)
public:
    static constexpr int lapsPerRun = 10;

    explicit BusyHost(const QString &path);
    ~BusyHost();

    /// Ends the thread after the current transaction.
    void stop();
    int commits() const { return m_commits; }

private:
    void recordRuns(const QString &path);

    std::atomic<bool> m_stop {false};
    std::atomic<int> m_commits {0};
    std::thread m_thread;
};
