#include "garagectl/commandlist.h"

#include "garagectl/commands/auditcommand.h"
#include "garagectl/commands/backupcommand.h"
#include "garagectl/commands/doctorcommand.h"
#include "garagectl/commands/duecommand.h"
#include "garagectl/commands/explaincommand.h"
#include "garagectl/commands/forecastcommand.h"
#include "garagectl/commands/historycommand.h"
#include "garagectl/commands/reportcommand.h"

std::vector<std::unique_ptr<Command>> makeCommands()
{
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<DueCommand>());
    commands.push_back(std::make_unique<ForecastCommand>());
    commands.push_back(std::make_unique<ExplainCommand>());
    commands.push_back(std::make_unique<HistoryCommand>());
    commands.push_back(std::make_unique<ReportCommand>());
    commands.push_back(std::make_unique<DoctorCommand>());
    commands.push_back(std::make_unique<AuditCommand>());
    commands.push_back(std::make_unique<BackupCommand>());
    return commands;
}
