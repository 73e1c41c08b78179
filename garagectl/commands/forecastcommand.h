#pragma once

#include "garagectl/command.h"
#include "garagectl/fleet/rowfilter.h"
#include "garagectl/output/rowoutput.h"

/// "garagectl forecast": when each limit will be passed at the present pace.
class ForecastCommand final : public Command
{
public:
    CLI::App *addTo(CLI::App &program) override;
    ExitCode run(const QString &databasePath) override;

private:
    RowOptions m_rowOptions;
    RowFilter m_filter;
    std::string m_until;
    int m_days = 28;
};
