#pragma once

#include <QDateTime>

#include <limits>

/// The time of a service record, to the millisecond. Stores the moment and converts it to local time on
/// request: each conversion asks the system's time zone, which for a whole service log takes longer than
/// reading it.
class RecordTime final
{
public:
    /// Invalid.
    RecordTime() = default;
    /// The moment of a date-time in any zone; invalid if that is.
    RecordTime(const QDateTime &time)
        : m_msSinceEpoch(time.isValid() ? time.toMSecsSinceEpoch() : invalidMoment)
    {
    }

    /// Milliseconds since 1970-01-01T00:00 UTC.
    static RecordTime fromMSecsSinceEpoch(qint64 milliseconds)
    {
        RecordTime time;
        time.m_msSinceEpoch = milliseconds;
        return time;
    }

    bool isValid() const { return m_msSinceEpoch != invalidMoment; }

    /// In the zone that the system has now; an invalid date-time if this is invalid.
    QDateTime toLocalTime() const { return inZone(Qt::LocalTime); }
    /// An invalid date-time if this is invalid.
    QDateTime toUtc() const { return inZone(Qt::UTC); }
    qint64 toMSecsSinceEpoch() const { return m_msSinceEpoch; }

    /// An invalid time is equal to another and before every valid one.
    friend bool operator==(RecordTime a, RecordTime b) { return a.m_msSinceEpoch == b.m_msSinceEpoch; }
    friend bool operator!=(RecordTime a, RecordTime b) { return !(a == b); }
    friend bool operator<(RecordTime a, RecordTime b) { return a.m_msSinceEpoch < b.m_msSinceEpoch; }
    friend bool operator>(RecordTime a, RecordTime b) { return b < a; }
    friend bool operator<=(RecordTime a, RecordTime b) { return !(b < a); }
    friend bool operator>=(RecordTime a, RecordTime b) { return !(a < b); }

private:
    static constexpr qint64 invalidMoment = std::numeric_limits<qint64>::min();

    QDateTime inZone(Qt::TimeSpec zone) const
    {
        return isValid() ? QDateTime::fromMSecsSinceEpoch(m_msSinceEpoch, zone) : QDateTime();
    }

    qint64 m_msSinceEpoch = invalidMoment;
};
