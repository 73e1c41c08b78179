#pragma once

#include "data/recordtime.h"

#include <QString>

/// The date-time texts of the system, in ASCII digits in every locale. An invalid date-time yields an empty
/// text.
namespace DateTimeText {

/// For people, in the given date-time's own zone: "dd.MM.yyyy hh:mm".
[[nodiscard]] QString forDisplay(const QDateTime &dateTime);
/// For messages, in UTC: "yyyy-MM-ddThh:mm".
[[nodiscard]] QString forJson(const QDateTime &dateTime);
/// For messages, in UTC with the zone: "yyyy-MM-ddThh:mmZ".
[[nodiscard]] QString forJsonWithZone(const QDateTime &dateTime);
/// For the announcement of a service done, in UTC: "yyyy-MM-dd hh:mm".
[[nodiscard]] QString forServiceAnnouncement(const QDateTime &dateTime);

/// Reads "yyyy-MM-ddThh:mm[:ss[.zzz]][Z|±hh:mm]", with "T" or a space, as stored in the database, and
/// returns an invalid time if the text is no such date-time. A text without a zone is UTC, because that is
/// how it compares with the others as text.
[[nodiscard]] RecordTime fromDatabase(const QString &text);

} // namespace DateTimeText
