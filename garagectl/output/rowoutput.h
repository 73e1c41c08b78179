#pragma once

#include "garagectl/output/texttable.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

/// How and where a command writes its rows: "--format" and "--output".
struct RowOptions
{
    /// The default format is the first.
    void addTo(CLI::App &command, const std::vector<std::string> &formats = {"table", "csv", "json"});

    std::string format = "table";
    std::string outputFile; ///< empty: standard output
};

/// The rows of a command in each form; only the requested one is created.
struct RowOutput
{
    std::function<QJsonObject()> json;
    QString rowsKey = QStringLiteral("rows"); ///< the array of rows in the JSON object
    QStringList csvColumns; ///< see Csv::fromRows
    std::function<TextTable()> table;
};

/// Writes all or nothing. Throws Failure if it cannot be written.
void writeRows(const RowOptions &options, const RowOutput &output);
/// The same for output that is made already.
void writeBytes(const RowOptions &options, const QByteArray &bytes);
