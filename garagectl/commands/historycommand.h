#pragma once

#include "garagectl/command.h"
#include "garagectl/fleet/rowfilter.h"
#include "garagectl/output/rowoutput.h"

/// "garagectl history": the service log, newest first.
class HistoryCommand final : public Command
{
public:
    CLI::App *addTo(CLI::App &program) override;
    ExitCode run(const QString &databasePath) override;

private:
    RowOptions m_rowOptions;
    RowFilter m_filter;
    std::string m_from;
    std::string m_to;
    bool m_onlyOpen = false;
};
