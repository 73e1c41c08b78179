#pragma once

#include "garagectl/command.h"
#include "garagectl/fleet/duerow.h"
#include "garagectl/fleet/rowfilter.h"

/// "garagectl report": a page with the state of the fleet, what is coming and what was done.
class ReportCommand final : public Command
{
public:
    CLI::App *addTo(CLI::App &program) override;
    ExitCode run(const QString &databasePath) override;

private:
    std::string m_file;
    RowFilter m_filter;
    double m_soonPercent = defaultSoonShare * 100;
    int m_days = 28;
    int m_weeks = 8;
    int m_records = 20;
};
