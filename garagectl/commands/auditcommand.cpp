#include "garagectl/commands/auditcommand.h"

#include "garagectl/audit/audit.h"
#include "garagectl/database/readonlyfile.h"
#include "garagectl/findings/findingoutput.h"
#include "garagectl/output/progress.h"
#include "garagectl/output/timetext.h"
#include "garagectl/wording.h"

#include <CLI/CLI.hpp>

namespace {

QJsonObject jsonOf(const MessageLog &log, const Findings &findings)
{
    const auto timeOf = [&log](int index) {
        const MessageLog::Message message = log.messages.value(index);
        return TimeText::forJson(message.time);
    };
    return {{QStringLiteral("messages"), log.messages.size()},
            {QStringLiteral("from"), timeOf(0)},
            {QStringLiteral("to"), timeOf(int(log.messages.size() - 1))},
            {QStringLiteral("findings"), FindingOutput::json(findings)}};
}

TextTable tableOf(const MessageLog &log, const Findings &findings)
{
    TextTable table = FindingOutput::table(findings);
    table.addFooter(text("Messages: %1.", "Сообщений: %1.").arg(log.messages.size()));
    return table;
}

} // namespace

CLI::App *AuditCommand::addTo(CLI::App &program)
{
    CLI::App *command = program.add_subcommand(
        "audit", utf8Text("Compares a message log with the database", "Сравнивает журнал обмена с базой"));
    command
        ->add_option("log", m_log,
                     utf8Text("The message log, one JSON object per line, as the demo host saves it",
                              "Журнал обмена: объект JSON в строке, как его сохраняет программа"))
        ->option_text(utf8Text("LOG", "ЖУРНАЛ"))
        ->required();
    m_rowOptions.addTo(*command);
    return command;
}

ExitCode AuditCommand::run(const QString &databasePath)
{
    MessageLog log;
    Findings findings;
    {
        Progress progress(text("reading the message log", "читается журнал обмена"));
        log = MessageLog::read(QString::fromStdString(m_log));
        progress.setTask(text("comparing with the database", "сравнивается с базой"));
        ReadOnlyFile::read(databasePath, [&](const GarageDatabase &database) {
            ReadOnlyFile::requireTables(database, {QStringLiteral("maintainance")});
            findings = Audit::compare(log, StoredRecords::read(database));
        });
    }
    writeRows(m_rowOptions,
              {[&] { return jsonOf(log, findings); }, QStringLiteral("findings"), FindingOutput::csvColumns(),
               [&] { return tableOf(log, findings); }});
    return hasError(findings) ? ExitCode::Found : ExitCode::Ok;
}
