#include "garagectl/commands/reportcommand.h"

#include "garagectl/database/readonlyfile.h"
#include "garagectl/fleet/forecast.h"
#include "garagectl/fleet/servicelog.h"
#include "garagectl/output/outputfile.h"
#include "garagectl/output/progress.h"
#include "garagectl/report/report.h"
#include "garagectl/report/reportpage.h"
#include "garagectl/wording.h"

#include <QFileInfo>

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

constexpr int mostWeeks = 52;

template<typename List, typename Accepts> void keep(List &list, Accepts accepts)
{
    list.erase(std::remove_if(list.begin(), list.end(), [&](const auto &entry) { return !accepts(entry); }),
               list.end());
}

void filterReport(Report &report, const RowFilter &filter)
{
    const auto acceptsRow = [&filter](const DueRow &row) {
        return filter.accepts(row.carNumber, row.carModel, row.opId, row.operation);
    };
    keep(report.cars, [&](const MaintainanceItem &car) { return filter.acceptsCar(car.num, car.model); });
    keep(report.rows, acceptsRow);
    keep(report.forecast, [&](const ForecastRow &row) { return acceptsRow(row.due); });
    keep(report.log, [&](const ServiceLogItem &item) {
        return filter.accepts(item.num, item.model, item.opId, item.opName);
    });
}

} // namespace

CLI::App *ReportCommand::addTo(CLI::App &program)
{
    CLI::App *command = program.add_subcommand(
        "report",
        utf8Text("Writes a page to look at and to print: the fleet, what is due, the forecast, the work done",
                 "Страница для просмотра и печати: парк, что пора, прогноз, сделанное"));
    const std::string number = utf8Text("NUMBER", "ЧИСЛО");
    command
        ->add_option("file", m_file,
                     utf8Text("The page; an existing file is replaced only by a complete one",
                              "Файл страницы; существующий заменяется, только когда новый готов целиком"))
        ->option_text(utf8Text("FILE.html", "ФАЙЛ.html"))
        ->required();
    m_filter.addTo(*command);
    command
        ->add_option("--soon", m_soonPercent,
                     utf8Text("\"soon\" from this percentage of a limit on (80)",
                              "«скоро» — с этого процента лимита (80)"))
        ->option_text("%")
        ->check(CLI::Range(0.0, 100.0));
    command
        ->add_option("--days", m_days,
                     utf8Text("The pace is that of the last days on which the track was open, this many (28)",
                              "Темп — по последним дням, когда трасса была открыта: столько дней (28)"))
        ->option_text(number)
        ->check(CLI::Range(1, 3650));
    command
        ->add_option("--weeks", m_weeks,
                     utf8Text("Weeks of the calendar ahead, and of the work done (8)",
                              "Сколько недель вперёд в календаре и назад в сделанном (8)"))
        ->option_text(number)
        ->check(CLI::Range(1, mostWeeks));
    command
        ->add_option("--records", m_records,
                     utf8Text("The latest records of each kart, this many (20)",
                              "Сколько последних записей каждого карта (20)"))
        ->option_text(number)
        ->check(CLI::Range(0, 1000000));
    return command;
}

ExitCode ReportCommand::run(const QString &databasePath)
{
    Report report;
    report.now = QDateTime::currentDateTime();
    report.fileName = QFileInfo(databasePath).fileName();
    report.paceDays = m_days;
    report.weeks = m_weeks;
    report.recordsPerKart = m_records;
    FleetStatus fleet;
    QVector<DrivingDay> driving;
    {
        const Progress progress(text("reading the laps", "читаются круги"));
        ReadOnlyFile::read(databasePath, [&](const GarageDatabase &database) {
            fleet = readFleetStatus(database);
            driving = readDrivingDays(database, report.now.date(), m_days);
            report.log = readServiceLog(database);
        });
    }
    report.rows = dueRows(fleet, m_soonPercent / 100);
    report.forecast = forecastRows(fleet, driving, report.now.date());
    report.cars = fleet.cars;
    filterReport(report, m_filter);

    OutputFile::write(QString::fromStdString(m_file), ReportPage::html(report));
    return ExitCode::Ok;
}
