#include "support/databaselock.h"

#include "support/testdatabase.h"

#include <QDeadlineTimer>
#include <QThread>

DatabaseLock::DatabaseLock(const QString &path, Kind kind, int milliseconds)
    : m_thread([=] {
        const TestDatabase database(path, false);
        database.exec(kind == Exclusive       ? "BEGIN EXCLUSIVE"
                          : kind == Immediate ? "BEGIN IMMEDIATE"
                                              : "BEGIN");
        if (kind == Shared)
            database.value("SELECT count(*) FROM sqlite_master");
        m_held = true;
        const QDeadlineTimer deadline(milliseconds);
        while (!m_release && !deadline.hasExpired())
            QThread::msleep(5);
        m_held = false;
        database.exec("COMMIT");
    })
{
    while (!m_held)
        QThread::msleep(1);
}

DatabaseLock::~DatabaseLock()
{
    m_release = true;
    m_thread.join();
}
