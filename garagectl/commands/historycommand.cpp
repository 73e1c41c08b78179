#include "garagectl/commands/historycommand.h"

#include "garagectl/database/readonlyfile.h"
#include "garagectl/fleet/servicelog.h"
#include "garagectl/output/timetext.h"
#include "garagectl/wording.h"

#include <QJsonArray>

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

const QStringList csvColumns = {
    QStringLiteral("time"),     QStringLiteral("carId"),       QStringLiteral("carNumber"),
    QStringLiteral("carModel"), QStringLiteral("operationId"), QStringLiteral("operation"),
    QStringLiteral("state"),    QStringLiteral("person"),      QStringLiteral("comment"),
    QStringLiteral("localId"),  QStringLiteral("remoteId")};

QJsonObject jsonRow(const ServiceLogItem &item)
{
    return {
        {QStringLiteral("time"), TimeText::forJson(item.opTime.toUtc())},
        {QStringLiteral("carId"), item.carId},
        {QStringLiteral("carNumber"), item.num},
        {QStringLiteral("carModel"), item.model},
        {QStringLiteral("operationId"), item.opId},
        {QStringLiteral("operation"), item.opName},
        {QStringLiteral("state"), item.state == OpenState ? QStringLiteral("open") : QStringLiteral("done")},
        {QStringLiteral("person"), item.personName},
        {QStringLiteral("comment"), item.comment},
        {QStringLiteral("localId"), item.id},
        {QStringLiteral("remoteId"), item.remoteId == noId ? QJsonValue() : QJsonValue(item.remoteId)}};
}

QJsonObject jsonOf(const QList<ServiceLogItem> &log)
{
    QJsonArray rows;
    for (const ServiceLogItem &item : log)
        rows.append(jsonRow(item));
    return {{QStringLiteral("rows"), rows}};
}

TextTable tableOf(const QList<ServiceLogItem> &log)
{
    TextTable table({{text("Time", "Время")},
                     {text("Model", "Модель")},
                     {text("Kart", "Карт"), TextTable::Right},
                     {text("Operation", "Операция")},
                     {text("State", "Состояние")},
                     {text("Person", "Исполнитель")},
                     {text("Comment", "Примечание")}});
    for (const ServiceLogItem &item : log) {
        const bool isOpen = item.state == OpenState;
        const TextTable::Cell state(isOpen ? text("open", "открыто") : text("done", "сделано"),
                                    isOpen ? TextTable::Bad : TextTable::Plain);
        table.addRow({TimeText::forPeople(item.opTime.toLocalTime()), item.model, item.num,
                      operationText(item), state, item.personName, item.comment});
    }
    table.addFooter(text("Records: %1", "Записей: %1").arg(log.size()));
    return table;
}

/// The first day that is listed, or the last one; invalid: no bound.
QDate boundOf(const std::string &argument)
{
    return argument.empty() ? QDate() : TimeText::dayFromArgument(QString::fromStdString(argument));
}

} // namespace

CLI::App *HistoryCommand::addTo(CLI::App &program)
{
    CLI::App *command = program.add_subcommand(
        "history",
        text("Lists the service log, newest first", "Журнал обслуживания, новые записи сверху")
            .toStdString());
    m_filter.addTo(*command);
    const std::string day = text("DAY", "ДЕНЬ").toStdString();
    command->add_option("--from", m_from, text("Not before this day", "Не раньше этого дня").toStdString())
        ->option_text(day);
    command->add_option("--to", m_to, text("Not after this day", "Не позже этого дня").toStdString())
        ->option_text(day);
    command->add_flag("--open", m_onlyOpen,
                      text("Only what is not done yet", "Только невыполненное").toStdString());
    m_rowOptions.addTo(*command);
    return command;
}

ExitCode HistoryCommand::run(const QString &databasePath)
{
    const QDate from = boundOf(m_from);
    const QDate to = boundOf(m_to);
    QList<ServiceLogItem> log;
    ReadOnlyFile::read(databasePath,
                       [&log](const GarageDatabase &database) { log = readServiceLog(database); });

    const auto isHidden = [&](const ServiceLogItem &item) {
        const QDate day = item.opTime.toLocalTime().date();
        return !m_filter.accepts(item.num, item.model, item.opId, item.opName)
            || (from.isValid() && !(day >= from)) || (to.isValid() && !(day.isValid() && day <= to))
            || (m_onlyOpen && item.state != OpenState);
    };
    log.erase(std::remove_if(log.begin(), log.end(), isHidden), log.end());

    writeRows(m_rowOptions,
              {[&log] { return jsonOf(log); }, QStringLiteral("rows"), csvColumns,
               [&log] { return tableOf(log); }});
    return ExitCode::Ok;
}
