#include "stdiosession.h"

#include "console.h"
#include "exitcode.h"
#include "pluginhost.h"

StdioSession::StdioSession(PluginHost &plugin, QObject *parent)
    : QObject(parent), m_plugin(plugin), m_watch(plugin)
{
    connect(&plugin, &PluginHost::received, this,
            [](const HostMessage &message) { Console::writeLine(message.toJsonLine()); });
    connect(&m_input, &StandardLines::line, this, &StdioSession::handOver);
    connect(&m_input, &StandardLines::ended, this, [this] { m_watch.finishWhenQuiet(); });
    connect(&m_watch, &AnswerWatch::finished, this, [this](bool allAnswered) {
        if (!allAnswered)
            Console::complain(tr("плагин не ответил"));
        emit finished(!allAnswered ? ExitCode::NoAnswer : m_inputWasBad ? ExitCode::BadInput : ExitCode::Ok);
    });
}

void StdioSession::handOver(const QByteArray &line)
{
    ++m_lineNumber;
    const std::optional<HostMessage> message = HostMessage::fromJsonLine(line);
    if (message) {
        m_plugin.send(*message);
        return;
    }
    m_inputWasBad = true;
    Console::complain(tr("строка %1 не является событием в виде JSON: %2")
                          .arg(m_lineNumber)
                          .arg(QString::fromUtf8(line.left(120))));
}
