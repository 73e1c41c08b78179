#pragma once

#include <QDate>
#include <QString>

/// Writes times as the shared tables hold them: UTC, "yyyy-MM-ddThh:mm:ss.zzzZ". Remembers the day it wrote
/// last, for millions of times in a row.
class TimestampText final
{
public:
    /// `milliseconds` since the epoch, UTC.
    QString of(qint64 milliseconds);

private:
    qint64 m_day = -1;
    QString m_date;
};

/// A UTC date-time of the protocol as people here read it; empty if it is none.
QString localTimeText(const QString &utcText);
