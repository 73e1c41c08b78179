#include "garagectl/commands/duecommand.h"

#include "data/numbertext.h"
#include "garagectl/database/readonlyfile.h"
#include "garagectl/fleet/dueoutput.h"
#include "garagectl/output/progress.h"
#include "garagectl/wording.h"

#include <QJsonArray>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <tuple>

namespace {

double shareOf(const DueRow &row)
{
    const std::optional<Meters::Share> share = Meters::largestShare(row.stat, row.limits);
    return share ? share->value : -1;
}

void sortRows(QVector<DueRow> &rows, const std::string &order)
{
    const auto sortBy = [&rows](auto key) {
        std::stable_sort(rows.begin(), rows.end(),
                         [&key](const DueRow &a, const DueRow &b) { return key(a) < key(b); });
    };
    if (order == "state")
        sortBy([](const DueRow &row) { return row.state; });
    else if (order == "share")
        sortBy([](const DueRow &row) { return -shareOf(row); });
    else if (order == "operation")
        sortBy([](const DueRow &row) { return std::make_tuple(row.operation, row.opId); });
    else if (order == "last")
        sortBy([](const DueRow &row) { return row.stat.lastDone; });
    else if (order == "car")
        sortBy([](const DueRow &row) {
            return std::make_tuple(row.carModel, leadingInteger(row.carNumber).value_or(noId), row.carNumber);
        });
}

QJsonObject jsonOf(const QVector<DueRow> &rows)
{
    QJsonArray array;
    for (const DueRow &row : rows)
        array.append(DueOutput::json(row));
    return {{QStringLiteral("rows"), array}};
}

TextTable tableOf(const QVector<DueRow> &rows)
{
    TextTable table(DueOutput::columns());
    for (const DueRow &row : rows)
        table.addRow(DueOutput::cells(row));
    const auto count = [&rows](DueState state) {
        return std::count_if(rows.cbegin(), rows.cend(),
                             [state](const DueRow &row) { return row.state == state; });
    };
    table.addFooter(
        text("Rows: %1. Open: %2, due: %3, soon: %4.", "Строк: %1. Открыто: %2, пора: %3, скоро: %4.")
            .arg(rows.size())
            .arg(count(DueState::Open))
            .arg(count(DueState::Due))
            .arg(count(DueState::Soon)));
    return table;
}

bool isFound(const QVector<DueRow> &rows, const std::string &failIf)
{
    return !failIf.empty() && std::any_of(rows.cbegin(), rows.cend(), [&failIf](const DueRow &row) {
        return row.needsWork() || (failIf == "soon" && row.state == DueState::Soon);
    });
}

} // namespace

CLI::App *DueCommand::addTo(CLI::App &program)
{
    CLI::App *command =
        program.add_subcommand("due",
                               text("Lists what is due, what soon will be, and how much is left",
                                    "Что пора делать, что скоро и сколько осталось")
                                   .toStdString());
    m_filter.addTo(*command);
    command
        ->add_option("--state", m_states,
                     text("Only rows in this state; may be given several times",
                          "Только строки в этом состоянии; можно указать несколько раз")
                         .toStdString())
        ->option_text("open|due|soon|ok|never")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::IsMember({"open", "due", "soon", "ok", "never"}));
    command
        ->add_option(
            "--soon", m_soonPercent,
            text("\"soon\" from this percentage of a limit on (80)", "«скоро» — с этого процента лимита (80)")
                .toStdString())
        ->option_text("%")
        ->check(CLI::Range(0.0, 100.0));
    command
        ->add_option("--sort", m_sort,
                     text("Order of the rows; without it, that of the module",
                          "Порядок строк; без ключа — как у модуля")
                         .toStdString())
        ->option_text("state|share|car|operation|last")
        ->check(CLI::IsMember({"state", "share", "car", "operation", "last"}));
    command
        ->add_option("--fail-if", m_failIf,
                     text("Exit with 4 if a listed row is open or due, or soon",
                          "Код выхода 4, если в списке есть открытое или просроченное, или то, что скоро")
                         .toStdString())
        ->option_text("due|soon")
        ->check(CLI::IsMember({"due", "soon"}));
    m_rowOptions.addTo(*command);
    return command;
}

ExitCode DueCommand::run(const QString &databasePath)
{
    FleetStatus fleet;
    {
        const Progress progress(text("reading the laps", "читаются круги"));
        ReadOnlyFile::read(databasePath,
                           [&fleet](const GarageDatabase &database) { fleet = readFleetStatus(database); });
    }
    QVector<DueRow> rows = dueRows(fleet, m_soonPercent / 100);
    const auto isHidden = [this](const DueRow &row) {
        const std::string state = DueOutput::key(row.state).toStdString();
        return !m_filter.accepts(row.carNumber, row.carModel, row.opId, row.operation)
            || (!m_states.empty() && std::find(m_states.cbegin(), m_states.cend(), state) == m_states.cend());
    };
    rows.erase(std::remove_if(rows.begin(), rows.end(), isHidden), rows.end());
    sortRows(rows, m_sort);

    writeRows(m_rowOptions,
              {[&rows] { return jsonOf(rows); }, QStringLiteral("rows"), DueOutput::csvColumns(),
               [&rows] { return tableOf(rows); }});
    return isFound(rows, m_failIf) ? ExitCode::Found : ExitCode::Ok;
}
