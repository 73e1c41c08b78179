#pragma once

#include <QString>

/// An SQL condition: the time of a lap is a date and a time. SQLite's own functions also take "now", times of
/// day and Julian days for times.
inline const QString lapTimeIsReadable =
    QStringLiteral("(lap_timestamp GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9][T ]*' "
                   "AND julianday(lap_timestamp) IS NOT NULL)");
