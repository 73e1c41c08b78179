#include "garagectl/output/rowoutput.h"

#include "garagectl/exitcode.h"
#include "garagectl/output/csv.h"
#include "garagectl/output/terminal.h"
#include "garagectl/wording.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>

#include <CLI/CLI.hpp>

namespace {

[[noreturn]] void failOn(const QFileDevice &file, const QString &path)
{
    throw Failure {ExitCode::NotWritten,
                   text("cannot write %1: %2", "файл %1 не записан: %2").arg(path, file.errorString())};
}

/// A pipe or a device, which cannot be replaced.
void writeInto(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        failOn(file, path);
}

void replaceFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        failOn(file, path);
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    const QFileInfo existing(path);
    if (existing.exists() && !existing.isFile() && !existing.isDir())
        writeInto(path, bytes);
    else
        replaceFile(path, bytes);
}

QByteArray bytesOf(const RowOptions &options, const RowOutput &output)
{
    if (options.format == "json")
        return QJsonDocument(output.json()).toJson();
    if (options.format == "csv")
        return Csv::fromRows(output.csvColumns, output.json().value(output.rowsKey).toArray());
    const bool withColours = options.outputFile.empty() && Terminal::hasColour();
    return output.table().toText(withColours).toUtf8();
}

} // namespace

void RowOptions::addTo(CLI::App &command, const std::vector<std::string> &formats)
{
    format = formats.front();
    command
        .add_option("--format", format,
                    text("Form of the output: for people, csv for spreadsheets, json for programs",
                         "Вид вывода: для людей, csv — для электронных таблиц, json — для программ")
                        .toStdString())
        ->option_text(CLI::detail::join(formats, "|"))
        ->check(CLI::IsMember(formats));
    command
        .add_option("--output", outputFile,
                    text("Write to this file, which is replaced only by a complete one",
                         "Записать в этот файл; заменяется, только когда готов целиком")
                        .toStdString())
        ->option_text(text("FILE", "ФАЙЛ").toStdString());
}

void writeRows(const RowOptions &options, const RowOutput &output)
{
    writeBytes(options, bytesOf(options, output));
}

void writeBytes(const RowOptions &options, const QByteArray &bytes)
{
    if (options.outputFile.empty())
        Terminal::write(bytes);
    else
        writeFile(QString::fromStdString(options.outputFile), bytes);
}
