#include "support/busyhost.h"

#include "support/testdatabase.h"

BusyHost::BusyHost(const QString &path) : m_thread([this, path] { recordRuns(path); })
{
}

BusyHost::~BusyHost()
{
    stop();
}

void BusyHost::stop()
{
    m_stop = true;
    if (m_thread.joinable())
        m_thread.join();
}

void BusyHost::recordRuns(const QString &path)
{
    constexpr int firstRun = 100;
    const TestDatabase database(path, false);
    while (!m_stop) {
        if (!database.tryExec("BEGIN IMMEDIATE"))
            continue;
        for (int lap = 0; lap < lapsPerRun; ++lap)
            database.addLap(1, firstRun + m_commits, "2026-03-03T10:00:00.000Z", 40000);
        while (!database.tryExec("COMMIT")) { }
        ++m_commits;
    }
}
