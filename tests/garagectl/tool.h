#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>

/// The real program, run to its end.
namespace Tool {

struct Result
{
    int exitCode = -1; ///< -1: crashed, or did not end
    QByteArray output;
    QString errors;

    QJsonObject json() const;
    QJsonArray rows() const { return json().value("rows").toArray(); }
};

/// In English, without colours. The database is the one in the test's home. Standard output goes to that
/// file, if one is given.
Result run(const QStringList &arguments, const QMap<QString, QString> &environment = {},
           const QString &outputFile = {});

/// The names, contents and modification times of all files in the folder of a file.
QStringList folderState(const QString &path);

/// What is wrong with the output by docs/garagectl/NAME.schema.json; empty: nothing.
QString schemaFaults(const QString &name, const QByteArray &output);

} // namespace Tool
