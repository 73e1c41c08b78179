#pragma once

#include "garagectl/command.h"
#include "garagectl/output/rowoutput.h"

/// "garagectl backup": a checked copy of the database, and the check of an old one.
class BackupCommand final : public Command
{
public:
    CLI::App *addTo(CLI::App &program) override;
    ExitCode run(const QString &databasePath) override;

private:
    ExitCode makeCopy(const QString &databasePath);
    ExitCode checkCopy(const QString &databasePath);

    RowOptions m_rowOptions;
    std::string m_folder;
    std::string m_fileToCheck;
    int m_keep = 0; ///< 0: all
};
