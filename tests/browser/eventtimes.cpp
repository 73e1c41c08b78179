#include "browser/eventtimes.h"

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

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

/// Timers and sockets count for the object that uses them.
QByteArray classNameOf(const QObject &object)
{
    const QByteArray name = object.metaObject()->className();
    if (object.parent() && (name == "QTimer" || name == "QSingleShotTimer" || name == "QSocketNotifier"))
        return object.parent()->metaObject()->className();
    return name;
}

} // namespace

bool EventTimes::notify(QObject *receiver, QEvent *event)
{
    if (m_isInEvent)
        return QApplication::notify(receiver, event);
    const QByteArray name = classNameOf(*receiver); // the event may delete it
    const qint64 waitedBefore = waitedForProcessor();
    QElapsedTimer timer;
    timer.start();
    m_isInEvent = true;
    const bool isHandled = QApplication::notify(receiver, event);
    m_isInEvent = false;
    Times &times = m_times[name];
    ++times.events;
    times.longest = std::max(times.longest, timer.nsecsElapsed() - (waitedForProcessor() - waitedBefore));
    return isHandled;
}

QMap<QByteArray, EventTimes::Times> EventTimes::take()
{
    return std::exchange(m_times, {});
}
