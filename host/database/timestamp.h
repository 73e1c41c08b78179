#pragma once

#include <QDate>
#include <QString>

/// Formats times as the shared tables hold them: UTC, "yyyy-MM-ddThh:mm:ss.zzzZ". Caches the text of the last
/// day, which makes consecutive times cheap.
class TimestampFormatter final
{
public:
    /// `milliseconds` since the epoch, UTC.
    QString format(qint64 milliseconds);

private:
    qint64 m_day = -1;
    QString m_date;
};

/// A UTC date-time of the protocol as local time, "dd.MM.yyyy hh:mm"; empty if it is not a date-time.
QString localTimeText(const QString &utcText);
