#include "host/database/timestamp.h"

#include <QDateTime>

namespace {

constexpr qint64 millisecondsPerDay = 24 * 3600 * 1000;
const QDate epoch(1970, 1, 1);

void writeDigits(QChar *end, int number, int digits)
{
    for (int digit = 1; digit <= digits; ++digit) {
        *(end - digit) = QLatin1Char(char('0' + number % 10));
        number /= 10;
    }
}

} // namespace

QString TimestampFormatter::format(qint64 milliseconds)
{
    const qint64 day = milliseconds / millisecondsPerDay;
    if (day != m_day) {
        m_day = day;
        m_date = epoch.addDays(day).toString(Qt::ISODate) + QLatin1String("T00:00:00.000Z");
    }
    const int ofDay = int(milliseconds % millisecondsPerDay);
    QString text = m_date;
    QChar *start = text.data();
    writeDigits(start + 13, ofDay / 3600000, 2);
    writeDigits(start + 16, ofDay / 60000 % 60, 2);
    writeDigits(start + 19, ofDay / 1000 % 60, 2);
    writeDigits(start + 23, ofDay % 1000, 3);
    return text;
}

QString localTimeText(const QString &utcText)
{
    QDateTime time = QDateTime::fromString(utcText, Qt::ISODate);
    time.setTimeSpec(Qt::UTC);
    return time.isValid() ? time.toLocalTime().toString(QStringLiteral("dd.MM.yyyy hh:mm")) : QString();
}
