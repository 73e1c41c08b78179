#include "host/database/retriedwrites.h"

#include "host/database/hostconnection.h"

namespace {
constexpr int shortWait = 100; // milliseconds
constexpr int retryDelay = 300; // milliseconds
} // namespace

RetriedWrites::RetriedWrites(HostConnection &connection, QObject *parent)
    : QObject(parent), m_connection(connection), m_timer(this)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &RetriedWrites::runWaiting);
}

RetriedWrites::~RetriedWrites()
{
    for (const Entry &entry : qAsConst(m_waiting)) {
        if (const Result result = entry.write(); !result)
            qWarning("Not saved: %s", qPrintable(result.errorText()));
    }
}

void RetriedWrites::add(const Write &write, const Finished &finished)
{
    m_waiting.append({write, finished});
    if (!m_timer.isActive())
        m_timer.start(0);
}

void RetriedWrites::runWaiting()
{
    while (!m_waiting.isEmpty()) {
        const Result result = attempt(m_waiting.first().write);
        if (result.isLocked()) {
            m_timer.start(retryDelay);
            emit delayed(result.errorText());
            return;
        }
        m_waiting.takeFirst().finished(result);
    }
}

Result RetriedWrites::attempt(const Write &write)
{
    const LockWait wait(m_connection, shortWait);
    return write();
}
