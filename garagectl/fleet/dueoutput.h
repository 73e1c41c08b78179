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

/// "1.5 h", "12 laps"
QString amount(Meters::Meter meter, double value);
/// "complaint: …", or the operation's name, or its id if it has none.
QString operationText(const DueRow &row);

} // namespace DueOutput
