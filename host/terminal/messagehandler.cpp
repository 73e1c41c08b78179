#include "host/terminal/messagehandler.h"

#include "host/terminal/console.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>

namespace {

/// Messages arrive from every thread, also after main() has returned: the state is never destroyed.
struct State
{
    QMutex mutex;
    QFile log;
    bool verbose = false;
};

State &state()
{
    static auto *state = new State;
    return *state;
}

/// The offscreen platform warns of every window operation that it does not have.
bool isPlatformRemark(const QString &text)
{
    return text.startsWith(QLatin1String("This plugin does not support "));
}

bool isShown(QtMsgType type, const QString &text)
{
    const bool isWarning = type != QtDebugMsg && type != QtInfoMsg;
    return state().verbose || (isWarning && !isPlatformRemark(text));
}

void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const QMutexLocker locker(&state().mutex);
    if (state().log.isOpen()) {
        const QString time = QDateTime::currentDateTime().toString(Qt::ISODateWithMs);
        state().log.write(
            QStringLiteral("%1 %2: %3\n").arg(time, QLatin1String(context.category), text).toUtf8());
        state().log.flush();
    }
    if (isShown(type, text))
        Console::writeError(text);
}

} // namespace

void MessageHandler::install(const QString &logFile, bool verbose)
{
    QDir().mkpath(QFileInfo(logFile).path());
    state().verbose = verbose;
    state().log.setFileName(logFile);
    state().log.open(QIODevice::WriteOnly | QIODevice::Truncate);
    qInstallMessageHandler(&handle);
}
