#include "host/validation/validation.h"

#include "host/terminal/console.h"
#include "host/terminal/exitcode.h"
#include "host/validation/checkprocess.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>

namespace {

const std::array outcomeWords {QLatin1String("PASSED"), QLatin1String("FAILED"), QLatin1String("SKIPPED")};

QString tr(const char *text)
{
    return QCoreApplication::translate("Validation", text);
}

/// Collects results; prints each at once unless all is to be one JSON object.
class Report final
{
public:
    explicit Report(bool asJson) : m_asJson(asJson) { }

    void add(const Check &check, const CheckResult &result)
    {
        ++m_counts.at(std::size_t(result.outcome));
        m_checks.append(
            QJsonObject {{QStringLiteral("name"), check.name},
                         {QStringLiteral("title"), check.title},
                         {QStringLiteral("outcome"), outcomeWords.at(std::size_t(result.outcome))},
                         {QStringLiteral("reason"), result.reason},
                         {QStringLiteral("milliseconds"), result.milliseconds}});
        if (!m_asJson)
            Console::writeLine(line(check, result));
    }

    void finish(const QString &library) const
    {
        if (m_asJson) {
            const QJsonObject report {{QStringLiteral("plugin"), library},
                                      {QStringLiteral("checks"), m_checks},
                                      {QStringLiteral("passed"), count(CheckResult::Passed)},
                                      {QStringLiteral("failed"), count(CheckResult::Failed)},
                                      {QStringLiteral("skipped"), count(CheckResult::Skipped)}};
            Console::writeLine(QJsonDocument(report).toJson().trimmed());
            return;
        }
        const int skipped = count(CheckResult::Skipped);
        const QString counts =
            tr("%1 passed, %2 failed").arg(count(CheckResult::Passed)).arg(count(CheckResult::Failed));
        Console::writeLine(skipped == 0 ? counts : counts + tr(", %1 skipped").arg(skipped));
    }

    int count(CheckResult::Outcome outcome) const { return m_counts.at(std::size_t(outcome)); }

private:
    static QString line(const Check &check, const CheckResult &result)
    {
        const QString head = QString(outcomeWords.at(std::size_t(result.outcome))).leftJustified(9)
            + check.name + QLatin1String(": ") + check.title;
        return result.reason.isEmpty() ? head : head + QLatin1String(" - ") + result.reason;
    }

    const bool m_asJson;
    std::array<int, outcomeWords.size()> m_counts {};
    QJsonArray m_checks;
};

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
    const auto runHere = [&](const Check &check) {
        return CheckProcess::run(check, library, request.timeLimit * 1000);
    };
    const CheckResult loaded = runHere(loading);
    Report report(request.asJson);
    for (const Check &check : allChecks()) {
        if (!request.checkNames.isEmpty() && !request.checkNames.contains(check.name))
            continue;
        if (check.name == loading.name)
            report.add(check, loaded);
        else if (loaded.outcome == CheckResult::Passed)
            report.add(check, runHere(check));
        else
            report.add(check,
                       {CheckResult::Skipped, tr("the library does not load: %1").arg(loaded.reason), 0});
    }
    report.finish(library);
    const bool isGood = loaded.outcome == CheckResult::Passed && report.count(CheckResult::Failed) == 0;
    return isGood ? ExitCode::Ok : ExitCode::ValidationFailed;
}
