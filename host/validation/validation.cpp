#include "host/validation/validation.h"

#include "host/terminal/console.h"
#include "host/terminal/exitcode.h"
#include "host/validation/checkprocess.h"
#include "host/validation/validationreport.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("Validation", text);
}

} // namespace

int Validation::run(const Request &request)
{
    const QFileInfo file(request.library);
    if (!file.isFile()) {
        Console::writeError(QCoreApplication::translate("PluginHost", "файла %1 нет").arg(request.library));
        return ExitCode::NoPlugin;
    }
    const QString library = file.absoluteFilePath();
    const Check &loading = allChecks().first();
    const auto runCheck = [&](const Check &check) {
        return CheckProcess::run(check, library, request.timeLimit * 1000);
    };
    const CheckResult loaded = runCheck(loading);
    ValidationReport report(request.asJson);
    for (const Check &check : allChecks()) {
        if (!request.checkNames.isEmpty() && !request.checkNames.contains(check.name))
            continue;
        if (check.name == loading.name)
            report.add(check, loaded);
        else if (loaded.outcome == CheckResult::Passed)
            report.add(check, runCheck(check));
        else
            report.add(check,
                       {CheckResult::Skipped, tr("the library does not load: %1").arg(loaded.reason), 0});
    }
    report.finish(library);
    const bool isGood = loaded.outcome == CheckResult::Passed && report.count(CheckResult::Failed) == 0;
    return isGood ? ExitCode::Ok : ExitCode::ValidationFailed;
}
