#include "garagectl/commands/forecastcommand.h"

#include "garagectl/database/readonlyfile.h"
#include "garagectl/fleet/dueoutput.h"
#include "garagectl/fleet/forecast.h"
#include "garagectl/output/progress.h"
#include "garagectl/output/timetext.h"
#include "garagectl/wording.h"

#include <QJsonArray>

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

QString basisKey(Pace::Basis basis)
{
    switch (basis) {
    case Pace::Kart:
        return QStringLiteral("kart");
    case Pace::Model:
        return QStringLiteral("model");
    case Pace::None:
        break;
    }
    return QStringLiteral("none");
}

QString basisText(Pace::Basis basis)
{
    switch (basis) {
    case Pace::Kart:
        return text("kart", "карт");
    case Pace::Model:
        return text("model", "модель");
    case Pace::None:
        break;
    }
    return text("unknown", "неизвестно");
}

QJsonObject jsonRow(const ForecastRow &row)
{
    QJsonObject json = DueOutput::json(row.due);
    QJsonObject pace;
    for (const Meters::Meter meter : Meters::all)
        pace.insert(DueOutput::key(meter), row.pace.perDay(meter));
    json.insert(QStringLiteral("pace"), row.pace.basis == Pace::None ? QJsonValue() : QJsonValue(pace));
    json.insert(QStringLiteral("expectedDate"), TimeText::forJson(row.expectedDay));
    json.insert(QStringLiteral("basis"), basisKey(row.pace.basis));
    return json;
}

QJsonObject jsonOf(const QVector<ForecastRow> &rows)
{
    QJsonArray array;
    for (const ForecastRow &row : rows)
        array.append(jsonRow(row));
    return {{QStringLiteral("rows"), array}};
}

QStringList csvColumns()
{
    return DueOutput::csvColumns()
        + QStringList {QStringLiteral("pace.seconds"), QStringLiteral("pace.runs"),
                       QStringLiteral("pace.laps"), QStringLiteral("expectedDate"), QStringLiteral("basis")};
}

QString expectedText(const ForecastRow &row)
{
    if (row.due.needsWork())
        return text("now", "сейчас");
    if (!row.due.isRecorded)
        return text("never: no record", "никогда: нет записи");
    return row.expectedDay.isValid() ? TimeText::forPeople(row.expectedDay) : text("unknown", "неизвестно");
}

/// Of the meter that decides, per day on which the track is open.
QString paceText(const ForecastRow &row)
{
    const std::optional<Meters::Share> share = Meters::largestShare(row.due.stat, row.due.limits);
    if (row.pace.basis == Pace::None || !share)
        return QString(QChar(0x2014));
    return DueOutput::amount(share->meter, row.pace.perDay(share->meter));
}

TextTable tableOf(const QVector<ForecastRow> &rows)
{
    QVector<TextTable::Column> columns = DueOutput::columns();
    columns.append(
        {{text("Per day", "В день"), TextTable::Right}, {text("Basis", "Основа")}, {text("Due on", "Срок")}});
    TextTable table(columns);
    for (const ForecastRow &row : rows) {
        TextTable::Row cells = DueOutput::cells(row.due);
        cells.append({paceText(row), basisText(row.pace.basis), expectedText(row)});
        table.addRow(cells);
    }
    table.addFooter(text("Rows: %1. Pace: per day on which the track is open.",
                         "Строк: %1. Темп — за день, когда трасса открыта.")
                        .arg(rows.size()));
    return table;
}

} // namespace

CLI::App *ForecastCommand::addTo(CLI::App &program)
{
    CLI::App *command =
        program.add_subcommand("forecast",
                               text("Shows when each limit will be passed at the present pace",
                                    "Когда при нынешнем темпе будет превышен каждый лимит")
                                   .toStdString());
    m_filter.addTo(*command);
    command
        ->add_option("--days", m_days,
                     text("The pace is that of the last days on which the track was open, this many (28)",
                          "Темп — по последним дням, когда трасса была открыта: столько дней (28)")
                         .toStdString())
        ->option_text(text("NUMBER", "ЧИСЛО").toStdString())
        ->check(CLI::Range(1, 3650));
    command
        ->add_option("--until", m_until,
                     text("Only what is due now or until this day",
                          "Только то, чей срок наступит до этого дня включительно")
                         .toStdString())
        ->option_text(text("DAY", "ДЕНЬ").toStdString());
    m_rowOptions.addTo(*command);
    return command;
}

ExitCode ForecastCommand::run(const QString &databasePath)
{
    const QDate until =
        m_until.empty() ? QDate() : TimeText::dayFromArgument(QString::fromStdString(m_until));
    const QDate today = QDate::currentDate();
    FleetStatus fleet;
    QVector<DrivingDay> driving;
    {
        const Progress progress(text("reading the laps", "читаются круги"));
        ReadOnlyFile::read(databasePath, [&](const GarageDatabase &database) {
            fleet = readFleetStatus(database);
            driving = readDrivingDays(database, today, m_days);
        });
    }
    QVector<ForecastRow> rows = forecastRows(fleet, driving, today);
    const auto isHidden = [&](const ForecastRow &row) {
        return !m_filter.accepts(row.due.carNumber, row.due.carModel, row.due.opId, row.due.operation)
            || (until.isValid() && !row.isDueBy(until));
    };
    rows.erase(std::remove_if(rows.begin(), rows.end(), isHidden), rows.end());

    writeRows(m_rowOptions,
              {[&rows] { return jsonOf(rows); }, QStringLiteral("rows"), csvColumns(),
               [&rows] { return tableOf(rows); }});
    return ExitCode::Ok;
}
