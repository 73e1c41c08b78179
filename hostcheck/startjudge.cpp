#include "hostcheck/startjudge.h"

#include "hostcheck/findings.h"

#include <QApplication>
#include <QThread>

bool StartJudge::judgeLoading()
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance())) {
        m_findings.report(QLatin1String("start-no-application"),
                          QStringLiteral("The plug-in was loaded while no QApplication existed."));
        return false;
    }
    if (QThread::currentThread() != qApp->thread()) {
        m_findings.report(QLatin1String("start-wrong-thread"),
                          QStringLiteral("The plug-in was loaded outside the GUI thread."));
        return false;
    }
    return true;
}

void StartJudge::judgeMessage(const QString &event, bool isConnected)
{
    if (!m_isCast)
        m_findings.report(
            QLatin1String("start-not-cast"),
            QStringLiteral("pluginSlot was called before the instance was cast with qobject_cast "
                           "to TrivexPluginInterface."));
    if (event != QLatin1String("load_complete")) {
        if (!m_isLoadComplete && !m_earlyEvents.contains(event))
            m_earlyEvents.append(event);
        return;
    }
    if (m_isLoadComplete)
        m_findings.report(QLatin1String("start-load-complete-twice"),
                          QStringLiteral("load_complete came more than once."));
    else
        judgeLoadComplete(isConnected);
    m_isLoadComplete = true;
}

void StartJudge::judgeLoadComplete(bool isConnected)
{
    if (!isConnected)
        m_findings.report(QLatin1String("start-not-connected"),
                          QStringLiteral("load_complete came before pluginSignal was connected."));
    if (!m_earlyEvents.isEmpty())
        m_findings.report(
            QLatin1String("start-order"),
            QStringLiteral("%1 came before load_complete.").arg(m_earlyEvents.join(QLatin1String(", "))));
}

void StartJudge::judgeEnd()
{
    if (!m_isLoadComplete)
        m_findings.report(QLatin1String("start-no-load-complete"),
                          QStringLiteral("load_complete did not come."));
}
