#include "garagectl/output/rowoutput.h"

#include "garagectl/output/csv.h"
#include "garagectl/output/outputfile.h"
#include "garagectl/output/terminal.h"
#include "garagectl/wording.h"

#include <QJsonDocument>

#include <CLI/CLI.hpp>

namespace {

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
        OutputFile::write(QString::fromStdString(options.outputFile), bytes);
}
