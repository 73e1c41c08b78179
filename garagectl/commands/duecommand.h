#pragma once

#include "garagectl/command.h"
#include "garagectl/fleet/rowfilter.h"
#include "garagectl/output/rowoutput.h"

/// "garagectl due": what each kart has driven since each operation, and what is due or soon will be.
class DueCommand final : public Command
{
public:
    CLI::App *addTo(CLI::App &program) override;
    ExitCode run(const QString &databasePath) override;

private:
    RowOptions m_rowOptions;
    RowFilter m_filter;
    std::vector<std::string> m_states;
    std::string m_sort;
    std::string m_failIf;
    double m_soonPercent = 80;
};
