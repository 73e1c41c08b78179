#include "browser/eventtimes.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace {

/// Nanoseconds for which this thread has waited for a processor; 0 if the system does not count them.
qint64 waitedForProcessor()
{
    static const int file = open("/proc/thread-self/schedstat", O_RDONLY | O_CLOEXEC);
    char text[96] = {};
    if (file < 0 || pread(file, text, sizeof text - 1, 0) <= 0)
        return 0;
    char *second = nullptr;
    std::strtoll(text, &second, 10);
    return std::strtoll(second, nullptr, 10);
}

qint64 workOfThread()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

} // namespace

/// Timers and sockets count for the object that uses them.
QByteArray EventTimes::classNameOf(const QObject &object) const
{
    const auto *address = reinterpret_cast<const char *>(&object);
    for (const Owner &owner : m_owners) {
        if (address > owner.begin && address < owner.begin + owner.size)
            return owner.className;
    }
    const QByteArray name = object.metaObject()->className();
    if (object.parent() && (name == "QTimer" || name == "QSingleShotTimer" || name == "QSocketNotifier"))
        return object.parent()->metaObject()->className();
    return name;
}

bool EventTimes::notify(QObject *receiver, QEvent *event)
{
    if (m_isInEvent)
        return QApplication::notify(receiver, event);
    const QByteArray name = classNameOf(*receiver); // the event may delete it
    const qint64 waitedBefore = waitedForProcessor();
    const qint64 workBefore = workOfThread();
    QElapsedTimer timer;
    timer.start();
    m_isInEvent = true;
    const bool isHandled = QApplication::notify(receiver, event);
    m_isInEvent = false;
    Times &times = m_times[name];
    ++times.events;
    times.longestWork = std::max(times.longestWork, workOfThread() - workBefore);
    times.longest = std::max(times.longest, timer.nsecsElapsed() - (waitedForProcessor() - waitedBefore));
    return isHandled;
}

QMap<QByteArray, EventTimes::Times> EventTimes::take()
{
    return std::exchange(m_times, {});
}
