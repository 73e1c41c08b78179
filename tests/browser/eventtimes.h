#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QMap>
#include <QVector>

/// Measures how long the event loop is blocked, by the class of the object that handles the event. Time in
/// which the thread is ready but other processes have the processor does not count.
class EventTimes final : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override;

    /// Counts the events of the object's member objects, such as its timers, for the object.
    template<class Owner> void addOwner(const Owner &owner)
    {
        m_owners.append(
            {reinterpret_cast<const char *>(&owner), sizeof owner, owner.metaObject()->className()});
    }

    struct Times
    {
        int events = 0;
        qint64 longest = 0; // nanoseconds
        qint64 longestWork = 0; // nanoseconds in which the thread had the processor
    };
    /// Since the last call. An event that is handled inside another one counts for the outer one alone.
    QMap<QByteArray, Times> take();

private:
    struct Owner
    {
        const char *begin;
        std::size_t size;
        QByteArray className;
    };

    QByteArray classNameOf(const QObject &object) const;

    QVector<Owner> m_owners;
    QMap<QByteArray, Times> m_times;
    bool m_isInEvent = false;
};
