#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

/// Moments of March 2026 in UTC, as local time of the test's zone.
inline QDateTime march(int day, int hour, int minute)
{
    return QDateTime(QDate(2026, 3, day), QTime(hour, minute), Qt::UTC).toLocalTime();
}

/// The text by which tables show a moment that is given in UTC, "yyyy-MM-dd hh:mm".
inline QString shown(const char *utc)
{
    QDateTime moment = QDateTime::fromString(utc, "yyyy-MM-dd hh:mm");
    moment.setTimeSpec(Qt::UTC);
    return QLocale::c().toString(moment.toLocalTime(), "dd.MM.yyyy hh:mm");
}
