#include "host/sessions/duesession.h"

#include "host/app/demohost.h"
#include "host/sessions/duetable.h"
#include "host/terminal/console.h"
#include "host/terminal/exitcode.h"

DueSession::DueSession(DemoHost &host) : m_host(host), m_watcher(host.plugin())
{
    connect(&host.plugin(), &PluginHost::received, this, [this](const HostMessage &message) {
        if (message.event == QLatin1String("update_pending_service"))
            m_pending = message.data;
    });
    connect(&m_watcher, &AnswerWatcher::finished, this, &DueSession::print);
}

void DueSession::start()
{
    m_host.fleet().sendStartSequence();
    m_watcher.finishWhenIdle();
}

void DueSession::print(bool allAnswered)
{
    if (allAnswered) {
        for (const QString &line : DueTable(m_host.connection()).lines(m_pending))
            Console::writeLine(line);
    } else {
        Console::writeError(tr("the plug-in did not answer"));
    }
    emit finished(allAnswered ? ExitCode::Ok : ExitCode::NoAnswer);
}
