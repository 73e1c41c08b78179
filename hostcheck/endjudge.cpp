#include "hostcheck/endjudge.h"

#include "hostcheck/findings.h"

#include <QCoreApplication>

#include <cstdlib>

namespace {
EndJudge *current = nullptr;
bool isExiting = false;
} // namespace

EndJudge::EndJudge(Findings &findings, std::function<void()> applicationEnds,
                   std::function<void()> processExits)
    : m_findings(findings)
    , m_applicationEnds(std::move(applicationEnds))
    , m_processExits(std::move(processExits))
{
    current = this;
    qAddPostRoutine(endApplication);
    static const int registration = std::atexit(exitProcess);
    Q_UNUSED(registration)
}

EndJudge::~EndJudge()
{
    qRemovePostRoutine(endApplication);
    current = nullptr;
}

void EndJudge::judgeDestruction()
{
    if (isExiting)
        return;
    if (m_hasApplicationEnded)
        m_findings.report(
            QLatin1String("end-after-application"),
            QStringLiteral("The plug-in was unloaded after the application object was destroyed."));
    m_findings.finish();
}

bool EndJudge::isProcessExiting() const
{
    return isExiting;
}

void EndJudge::endApplication()
{
    if (!current)
        return;
    current->m_hasApplicationEnded = true;
    current->m_applicationEnds();
}

void EndJudge::exitProcess()
{
    isExiting = true;
    if (!current)
        return;
    current->m_processExits();
    current->m_findings.report(QLatin1String("end-not-unloaded"),
                               QStringLiteral("The process ended while the plug-in was loaded."));
    current->m_findings.finish();
}
