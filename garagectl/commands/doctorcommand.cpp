#include "garagectl/commands/doctorcommand.h"

#include "garagectl/doctor/examination.h"
#include "garagectl/findings/findingoutput.h"
#include "garagectl/output/progress.h"
#include "garagectl/wording.h"

#include <CLI/CLI.hpp>

CLI::App *DoctorCommand::addTo(CLI::App &program)
{
    CLI::App *command =
        program.add_subcommand("doctor",
                               utf8Text("Lists what is wrong with the database, and what helps",
                                        "Что не так с базой и что с этим делать"));
    m_rowOptions.addTo(*command);
    return command;
}

ExitCode DoctorCommand::run(const QString &databasePath)
{
    Findings findings;
    {
        Progress progress(text("looking at the file", "осматривается файл"));
        findings = examine(databasePath, progress);
    }
    const QString key = QStringLiteral("findings");
    writeRows(m_rowOptions,
              {[&] {
                   return QJsonObject {{key, FindingOutput::json(findings)}};
               },
               key, FindingOutput::csvColumns(), [&findings] { return FindingOutput::table(findings); }});
    return hasError(findings) ? ExitCode::Found : ExitCode::Ok;
}
