#pragma once

#include "garagectl/command.h"
#include "garagectl/output/rowoutput.h"

/// "garagectl explain": why an operation of a kart is due or is not.
class ExplainCommand final : public Command
{
public:
    CLI::App *addTo(CLI::App &program) override;
    ExitCode run(const QString &databasePath) override;

private:
    RowOptions m_rowOptions;
    std::string m_car;
    std::string m_operation;
    std::string m_model;
};
