#include "garagectl/output/progress.h"

#include "garagectl/output/terminal.h"

#include <QElapsedTimer>
#include <QMutexLocker>

#include <cstdio>

namespace {

constexpr unsigned long intervalMs = 1000;
const char *const clearLine = "\r\033[K";

void writeError(const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stderr);
    std::fflush(stderr);
}

} // namespace

Progress::Progress(const QString &task) : m_task(task)
{
    if (Terminal::showsProgress())
        m_thread = std::thread([this] { show(); });
}

Progress::~Progress()
{
    if (!m_thread.joinable())
        return;
    {
        const QMutexLocker lock(&m_mutex);
        m_hasEnded = true;
        m_ended.wakeAll();
    }
    m_thread.join();
}

void Progress::setTask(const QString &task)
{
    const QMutexLocker lock(&m_mutex);
    m_task = task;
}

void Progress::show()
{
    QElapsedTimer timer;
    timer.start();
    bool isShown = false;
    const QMutexLocker lock(&m_mutex);
    while (!m_hasEnded) {
        m_ended.wait(&m_mutex, intervalMs);
        if (m_hasEnded)
            break;
        writeError(clearLine + m_task.toUtf8() + "... " + QByteArray::number(timer.elapsed() / 1000) + " s");
        isShown = true;
    }
    if (isShown)
        writeError(clearLine);
}
