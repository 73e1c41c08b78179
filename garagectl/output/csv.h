#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QStringList>

/// Comma-separated values by RFC 4180, UTF-8, with a header line.
namespace Csv {

/// Rows of JSON objects. A column is the path of its value ("limits.runs"), whose last words name it
/// ("limitsRuns"); a value that is null or missing is an empty cell.
QByteArray fromRows(const QStringList &columns, const QJsonArray &rows);

/// A text as a cell. One that a spreadsheet would calculate gets an apostrophe before it.
QString textCell(const QString &text);

} // namespace Csv
