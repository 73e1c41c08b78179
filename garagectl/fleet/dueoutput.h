#pragma once

#include "garagectl/fleet/duerow.h"
#include "garagectl/output/texttable.h"

#include <QJsonObject>
#include <QStringList>

/// How rows of operations are written.
namespace DueOutput {

/// "open", "due", "soon", "ok", "never"
QString key(DueState state);
/// "seconds", "runs", "laps"
QString key(Meters::Meter meter);

QJsonObject json(const DueRow &row);
QStringList csvColumns();

/// The columns for the kart, the operation and its state, and their cells.
QVector<TextTable::Column> columns();
TextTable::Row cells(const DueRow &row);

QString stateText(DueState state);
/// How much of the limit of the meter that decides is used up, rounded down; nothing without a limit or
/// a record.
std::optional<int> percent(const DueRow &row);
/// As the two below, of the meter that decides, and "—" where there is none. "107 %"
QString shareText(const DueRow &row);
/// "5.4 of 5.0 h"; only the limit without a record.
QString drivenText(const DueRow &row);
/// "-0.4 h"
QString leftText(const DueRow &row);

/// "1.5 h", "12 laps"
QString amount(Meters::Meter meter, double value);
/// "complaint: …", or the operation's name, or its id if it has none.
QString operationText(const DueRow &row);

} // namespace DueOutput
