#include "host/sessions/stdiosession.h"

#include "host/app/demohost.h"
#include "host/terminal/console.h"
#include "host/terminal/exitcode.h"

StdioSession::StdioSession(DemoHost &host) : m_host(host), m_watcher(host.plugin())
{
    connect(&host.plugin(), &PluginHost::received, this,
            [](const HostMessage &message) { Console::writeLine(message.toJsonLine()); });
    connect(&m_input, &StandardInputReader::line, this, &StdioSession::sendLine);
    connect(&m_input, &StandardInputReader::ended, this, [this] { m_watcher.finishWhenIdle(); });
    connect(&m_watcher, &AnswerWatcher::finished, this, &StdioSession::end);
}

void StdioSession::start()
{
    m_host.fleet().sendStartSequence();
}

void StdioSession::sendLine(const QByteArray &line, int number)
{
    const std::optional<HostMessage> message = HostMessage::fromJsonLine(line);
    if (message) {
        m_host.plugin().send(*message);
        return;
    }
    m_inputWasBad = true;
    Console::writeError(
        tr("line %1 is not an event in JSON: %2").arg(number).arg(QString::fromUtf8(line.left(120))));
}

void StdioSession::end(bool allAnswered)
{
    if (!allAnswered)
        Console::writeError(tr("the plug-in did not answer"));
    const int inputCode = m_inputWasBad ? ExitCode::BadInput : ExitCode::Ok;
    emit finished(allAnswered ? inputCode : ExitCode::NoAnswer);
}
