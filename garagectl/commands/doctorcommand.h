#pragma once

#include "garagectl/command.h"
#include "garagectl/output/rowoutput.h"

/// "garagectl doctor": everything that is wrong with the database, what it does, and what helps.
class DoctorCommand final : public Command
{
public:
    CLI::App *addTo(CLI::App &program) override;
    ExitCode run(const QString &databasePath) override;

private:
    RowOptions m_rowOptions;
};
