#include "host/validation/validation.h"

#include "host/terminal/console.h"
#include "host/terminal/exitcode.h"
#include "host/validation/checkprocess.h"
#include "host/validation/validationreport.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Validation)
};

} // namespace

int Validation::run(const Request &request)
{
    const QFileInfo file(request.library);
    if (!file.isFile()) {
        Console::writeError(Text::tr("file %1 does not exist").arg(request.library));
        return ExitCode::NoPlugin;
    }
    const QString library = file.absoluteFilePath();
    const QVector<Check> checks = allChecks();
    const Check &loading = checks.first();
    const auto runCheck = [&](const Check &check) {
        return CheckProcess::run(check, library, request.language, request.timeLimit * 1000);
    };
    const CheckResult loaded = runCheck(loading);
    ValidationReport report(request.asJson);
    for (const Check &check : checks) {
        if (!request.checkNames.isEmpty() && !request.checkNames.contains(check.name))
            continue;
        if (check.name == loading.name)
            report.add(check, loaded);
        else if (loaded.outcome == CheckResult::Passed)
            report.add(check, runCheck(check));
        else
            report.add(
                check,
                {CheckResult::Skipped, Text::tr("the library does not load: %1").arg(loaded.reason), 0});
    }
    report.finish(library);
    const bool isGood = loaded.outcome == CheckResult::Passed && report.count(CheckResult::Failed) == 0;
    return isGood ? ExitCode::Ok : ExitCode::ValidationFailed;
}
