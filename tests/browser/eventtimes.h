#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QMap>

/// Measures how long the event loop is blocked, by the class of the object that handles the event. Time in
/// which the thread is ready but other processes have the processor does not count.
class EventTimes final : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override;

    struct Times
    {
        int events = 0;
        qint64 longest = 0; // nanoseconds
    };
    /// Since the last call. An event that is handled inside another one counts for the outer one alone.
    QMap<QByteArray, Times> take();

private:
    QMap<QByteArray, Times> m_times;
    bool m_isInEvent = false;
};
