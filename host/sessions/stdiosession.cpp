#include "host/sessions/stdiosession.h"

#include "host/app/demohost.h"
#include "host/terminal/console.h"
#include "host/terminal/exitcode.h"

StdioSession::StdioSession(DemoHost &host) : m_host(host), m_watch(host.plugin())
{
    connect(&host.plugin(), &PluginHost::received, this,
            [](const HostMessage &message) { Console::writeLine(message.toJsonLine()); });
    connect(&m_input, &StandardLines::line, this, &StdioSession::handOver);
    connect(&m_input, &StandardLines::ended, this, [this] { m_watch.finishWhenQuiet(); });
    connect(&m_watch, &AnswerWatch::finished, this, &StdioSession::end);
}

void StdioSession::start()
{
    m_host.fleet().playStart();
}

void StdioSession::handOver(const QByteArray &line)
{
    ++m_lineNumber;
    const std::optional<HostMessage> message = HostMessage::fromJsonLine(line);
    if (message) {
        m_host.plugin().send(*message);
        return;
    }
    m_inputWasBad = true;
    Console::complain(tr("строка %1 не является событием в виде JSON: %2")
                          .arg(m_lineNumber)
                          .arg(QString::fromUtf8(line.left(120))));
}

void StdioSession::end(bool allAnswered)
{
    if (!allAnswered)
        Console::complain(tr("плагин не ответил"));
    const int inputCode = m_inputWasBad ? ExitCode::BadInput : ExitCode::Ok;
    emit finished(allAnswered ? inputCode : ExitCode::NoAnswer);
}
