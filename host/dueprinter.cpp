#include "dueprinter.h"

#include "console.h"
#include "exitcode.h"
#include "pluginhost.h"

DuePrinter::DuePrinter(HostConnection &connection, PluginHost &plugin, QObject *parent)
    : QObject(parent), m_table(connection), m_watch(plugin)
{
    connect(&plugin, &PluginHost::received, this, [this](const HostMessage &message) {
        if (message.event == QLatin1String("update_pending_service"))
            m_pending = message.data;
    });
    connect(&m_watch, &AnswerWatch::finished, this, [this](bool allAnswered) {
        if (!allAnswered) {
            Console::complain(tr("плагин не ответил"));
            emit finished(ExitCode::NoAnswer);
            return;
        }
        for (const QString &line : m_table.lines(m_pending))
            Console::writeLine(line);
        emit finished(ExitCode::Ok);
    });
    m_watch.finishWhenQuiet();
}
