#include "host/validation/validationreport.h"

#include "host/terminal/console.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const std::array<QLatin1String, CheckResult::OutcomeCount> outcomeNames {
    QLatin1String("PASSED"), QLatin1String("FAILED"), QLatin1String("SKIPPED")};

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Validation)
};

QString line(const Check &check, const CheckResult &result)
{
    const QString head = QString(outcomeNames.at(std::size_t(result.outcome))).leftJustified(9) + check.name
        + QLatin1String(": ") + check.title;
    return result.reason.isEmpty() ? head : head + QLatin1String(" - ") + result.reason;
}

} // namespace

void ValidationReport::add(const Check &check, const CheckResult &result)
{
    ++m_counts.at(std::size_t(result.outcome));
    m_checks.append(QJsonObject {{QStringLiteral("name"), check.name},
                                 {QStringLiteral("title"), check.title},
                                 {QStringLiteral("outcome"), outcomeNames.at(std::size_t(result.outcome))},
                                 {QStringLiteral("reason"), result.reason},
                                 {QStringLiteral("milliseconds"), result.milliseconds}});
    if (!m_asJson)
        Console::writeLine(line(check, result));
}

void ValidationReport::finish(const QString &library) const
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
        Text::tr("%1 passed, %2 failed").arg(count(CheckResult::Passed)).arg(count(CheckResult::Failed));
    Console::writeLine(skipped == 0 ? counts : counts + Text::tr(", %1 skipped").arg(skipped));
}
