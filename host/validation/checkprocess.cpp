#include "host/validation/checkprocess.h"

#include "host/terminal/exitcode.h"
#include "host/validation/checkcontext.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>

namespace {

const QLatin1String outcomeKey("outcome");
const QLatin1String reasonKey("reason");
const QLatin1String resultFile("/result.json"); // standard output may hold the plug-in's own lines

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(CheckProcess)
};

CheckResult readResult(const QString &folder)
{
    QFile file(folder + resultFile);
    if (!file.open(QIODevice::ReadOnly))
        return {CheckResult::Failed, Text::tr("the program ended before the check was complete"), 0};
    const QJsonObject result = QJsonDocument::fromJson(file.readAll()).object();
    return {CheckResult::Outcome(result.value(outcomeKey).toInt(CheckResult::Failed)),
            result.value(reasonKey).toString(), 0};
}

bool writeResult(const QString &folder, const CheckResult &result)
{
    QFile file(folder + resultFile);
    const QJsonObject json {{outcomeKey, result.outcome}, {reasonKey, result.reason}};
    return file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(json).toJson()) > 0;
}

QProcessEnvironment quietEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return environment;
}

/// Evaluates the end of the process: a plug-in may crash after its check has passed.
CheckResult resultOf(const QProcess &process, const QString &folder)
{
    CheckResult result = readResult(folder);
    if (process.exitStatus() == QProcess::CrashExit)
        return {CheckResult::Failed, Text::tr("it crashed with signal %1").arg(process.exitCode()), 0};
    if (process.exitCode() != ExitCode::Ok && result.outcome != CheckResult::Failed)
        return {CheckResult::Failed, Text::tr("the program ended with code %1").arg(process.exitCode()), 0};
    return result;
}

CheckResult perform(const Check &check, CheckContext &context)
{
    try {
        check.run(context);
        return {CheckResult::Passed, QString(), 0};
    } catch (const CheckFailed &failed) {
        return {CheckResult::Failed, failed.reason, 0};
    } catch (const CheckSkipped &skipped) {
        return {CheckResult::Skipped, skipped.reason, 0};
    }
}

} // namespace

CheckResult CheckProcess::run(const Check &check, const QString &library, const QString &language,
                              int limitMilliseconds)
{
    const QTemporaryDir folder;
    QProcess process;
    process.setProcessEnvironment(quietEnvironment());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer clock;
    clock.start();
    process.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--validate"), library, QStringLiteral("--check"), check.name,
                   QStringLiteral("--in-this-process"), QStringLiteral("--lang"), language,
                   QStringLiteral("--home"), folder.path()});
    CheckResult result;
    if (!process.waitForStarted()) {
        result = {CheckResult::Skipped, process.errorString(), 0};
    } else if (process.waitForFinished(limitMilliseconds)) {
        result = resultOf(process, folder.path());
    } else {
        process.kill();
        process.waitForFinished();
        result.reason = Text::tr("it hangs: the check did not end within %1 s").arg(limitMilliseconds / 1000);
    }
    result.milliseconds = clock.elapsed();
    return result;
}

int CheckProcess::runHere(const Check &check, const QString &library, const DataFolder &folder)
{
    CheckContext context(library, folder);
    const CheckResult result = perform(check, context);
    return writeResult(folder.path(), result) ? ExitCode::Ok : ExitCode::ValidationFailed;
}
