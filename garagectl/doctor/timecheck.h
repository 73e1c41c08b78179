#pragma once

#include "data/garagedatabase.h"
#include "garagectl/findings/finding.h"

#include <QDateTime>
#include <QVariant>

/// The stored times: what they are compared as, and what they are read as.
namespace TimeCheck {

enum Form { Normal, Number, Empty, NotAscii, Unreadable, Offset, Blank, Zoneless, OtherPrecision };

/// How a stored value differs from "2026-03-01T10:00:00.000Z".
Form formOf(const QVariant &value);

/// Throws the QSqlError of a statement that fails.
Findings checkLaps(const GarageDatabase &database, const QDateTime &now);
Findings checkRecords(const GarageDatabase &database, const QDateTime &now);

} // namespace TimeCheck
