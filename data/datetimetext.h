#pragma once

#include <QDateTime>
#include <QString>

/// The date-time texts of the system. An invalid date-time gives an empty text.
namespace DateTimeText {

/// For people, in the given date-time's own zone: "dd.MM.yyyy hh:mm".
QString forDisplay(const QDateTime &dateTime);
/// For messages, in UTC: "yyyy-MM-ddThh:mm".
QString forJson(const QDateTime &dateTime);
/// For messages, in UTC and saying so: "yyyy-MM-ddThh:mmZ".
QString forJsonWithZone(const QDateTime &dateTime);
/// For the announcement of a service done, in UTC: "yyyy-MM-dd hh:mm".
QString forServiceAnnouncement(const QDateTime &dateTime);

/// Reads "yyyy-MM-ddThh:mm[:ss[.zzz]][Z|±hh:mm]", with "T" or a blank, as it stands in the database, and
/// gives local time; invalid if the text is no such date-time. A text without a zone is UTC, because that
/// is how it compares with the others as text.
QDateTime fromDatabase(const QString &text);

} // namespace DateTimeText
