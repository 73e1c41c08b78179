#pragma once

#include <QDate>
#include <QDateTime>
#include <QJsonValue>
#include <QString>

/// Times and dates in the output; ASCII digits in every locale.
namespace TimeText {

/// For people, in local time: "31.12.2026 23:59", in English "2026-12-31 23:59"; "—" if invalid.
QString forPeople(const QDateTime &time);
QString forPeople(const QDate &date);
/// For programs, in UTC: "2026-12-31T20:59:00Z"; null if invalid.
QJsonValue forJson(const QDateTime &time);
/// A calendar day of local time: "2026-12-31"; null if invalid.
QJsonValue forJson(const QDate &date);

/// A day as typed, "2026-12-31" or "31.12.2026". Throws Failure (BadUsage) if the text is no day.
QDate dayFromArgument(const QString &text);

} // namespace TimeText
