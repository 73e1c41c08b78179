// The demo host with the finished library, serving the page until it is killed. Prints the port that it
// serves.
//   webhost [STEP]   kills itself at that step of the way of a piece of work:
//     stored      it is stored on the remote side, neither answered nor sent
//     marked      it is marked as sent, the module has not got it
//     handed      the module has got it
//     committed   the module has stored it and reloaded, the archive is not announced
//     announced   the module has announced that it is stored
//     archived    the remote side has archived it

#include "host/app/demohost.h"
#include "host/database/datafolder.h"
#include "host/database/hostdatabase.h"

#include <QApplication>

#include <csignal>
#include <cstdio>
#include <utility>

#include <unistd.h>

namespace {

/// The module's marks of its steps are none of the test's output.
void discardDebugLines(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg && !message.startsWith("QStandardPaths: XDG_RUNTIME_DIR"))
        std::fputs(qPrintable(message + '\n'), stderr);
}

/// As a power cut for the process alone: nothing is flushed, no destructor runs.
void die()
{
    ::kill(::getpid(), SIGKILL);
}

bool carriesRecords(const HostMessage &message)
{
    return message.event == "remote_service_data" && message.data.value("data").toString() != "[]";
}

/// Dies at the step of the first records that are sent.
class Killer final : public QObject
{
public:
    Killer(DemoHost &host, const QString &step) : m_step(step)
    {
        // The host's own handlers are queued or were connected before: these run between its steps.
        connect(&host.plugin(), &PluginHost::sent, this, [this](const HostMessage &message) {
            if (!carriesRecords(message))
                return;
            dieAt("marked");
            m_isSent = true;
        });
        connect(&host.plugin(), &PluginHost::received, this, [this](const HostMessage &message) {
            if (m_isSent && message.event == "update_pending_service")
                dieAt("committed");
            if (message.event != "remote_service_move_to_archive")
                return;
            dieAt("announced");
            m_isArchiving = true;
        });
        connect(&host.remote(), &RemoteSide::recordsChanged, this, [this] {
            dieAt(m_isArchiving ? "archived" : m_isSent ? "handed" : "stored");
        });
    }

private:
    void dieAt(const char *step) const
    {
        if (m_step == step)
            die();
    }

    const QString m_step;
    bool m_isSent = false;
    bool m_isArchiving = false;
};

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(&discardDebugLines);
    const QApplication application(argc, argv);
    const DataFolder documents = DataFolder::userDocuments();
    if (!HostDatabase::prepare(documents))
        return 1;
    DemoHost host(documents, 1);
    if (!host.plugin().load(GARAGE_PLUGIN) || !host.remote().prepare())
        return 1;
    const Killer killer(host, QString::fromLatin1(argc > 1 ? argv[1] : ""));
    WebAccess access;
    access.endpoint.port = 0;
    if (!host.web().start(access))
        return 1;
    // After the reload of the start, which is none of the steps.
    bool isReady = false;
    QObject::connect(&host.remote(), &RemoteSide::pendingChanged, &application, [&] {
        if (!std::exchange(isReady, true))
            std::printf("%s\n", qPrintable(host.web().url()));
        std::fflush(stdout);
    });
    host.fleet().sendStartSequence();
    return QApplication::exec();
}
