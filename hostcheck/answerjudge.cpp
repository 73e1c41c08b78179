#include "hostcheck/answerjudge.h"

#include "hostcheck/findings.h"

#include <algorithm>

namespace {
constexpr int pollInterval = 50; // milliseconds
} // namespace

AnswerJudge::AnswerJudge(Findings &findings) : m_findings(findings)
{
    QObject::connect(&m_timer, &QTimer::timeout, [this] { check(); });
}

void AnswerJudge::expect(QLatin1String id, const QString &seenOtherwise, std::function<bool()> isMet)
{
    forget(id);
    Expectation expectation {id, seenOtherwise, std::move(isMet), {}};
    expectation.age.start();
    m_expectations.append(expectation);
    m_timer.start(pollInterval);
}

void AnswerJudge::forget(QLatin1String id)
{
    m_expectations.erase(
        std::remove_if(m_expectations.begin(), m_expectations.end(),
                       [id](const Expectation &expectation) { return expectation.id == id; }),
        m_expectations.end());
}

void AnswerJudge::check()
{
    reportOlderThan(limit);
    if (m_expectations.isEmpty())
        m_timer.stop();
}

void AnswerJudge::judgeQuit()
{
    reportOlderThan(limitAtEnd);
}

void AnswerJudge::judgeEnd()
{
    reportOlderThan(limitAtEnd);
    m_expectations.clear();
    m_timer.stop();
}

void AnswerJudge::reportOlderThan(int milliseconds)
{
    QVector<Expectation> waiting;
    for (const Expectation &expectation : qAsConst(m_expectations)) {
        if (expectation.isMet())
            continue;
        if (expectation.age.hasExpired(milliseconds))
            m_findings.report(expectation.id, expectation.seenOtherwise);
        else
            waiting.append(expectation);
    }
    m_expectations = waiting;
}
