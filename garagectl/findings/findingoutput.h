#pragma once

#include "garagectl/findings/finding.h"
#include "garagectl/output/rowoutput.h"

#include <QJsonArray>

/// How findings are shown.
namespace FindingOutput {

QJsonArray json(const Findings &findings);
/// Columns for Csv::fromRows().
QStringList csvColumns();
/// An overview, then what each finding means. Without findings one line that says so.
TextTable table(const Findings &findings);

} // namespace FindingOutput
