#pragma once

#include "garagectl/command.h"
#include "garagectl/output/rowoutput.h"

/// "garagectl audit": compares a message log with the database.
class AuditCommand final : public Command
{
public:
    CLI::App *addTo(CLI::App &program) override;
    ExitCode run(const QString &databasePath) override;

private:
    RowOptions m_rowOptions;
    std::string m_log;
};
