#include "host/sessions/toursession.h"

#include "host/app/demohost.h"
#include "host/database/datafolder.h"
#include "host/sessions/duetable.h"
#include "host/terminal/console.h"
#include "host/terminal/exitcode.h"

TourSession::TourSession(DemoHost &host, const DataFolder &folder, const QString &screenshots,
                         const QSize &windowSize)
    : m_host(host)
    , m_window(host, folder)
    , m_tour(host, m_window, screenshots, windowSize, !folder.isUserDocuments())
    , m_folder(screenshots)
{
    connect(&host.plugin(), &PluginHost::received, this, &TourSession::handleMessage);
    connect(&m_tour, &ScreenshotTour::finished, this, &TourSession::finish);
}

void TourSession::start()
{
    Console::writeLine(tr("Opens every page of the window, saves a screenshot of each, and prints which "
                          "services are due. This takes about 20 seconds."));
    m_window.start();
    m_tour.start();
}

void TourSession::handleMessage(const HostMessage &message)
{
    if (m_due.isEmpty() && message.event == QLatin1String("update_pending_service"))
        m_due = DueTable(m_host.connection()).lines(message.data);
}

void TourSession::finish(int exitCode, const QString &error)
{
    if (exitCode != ExitCode::Ok) {
        Console::writeError(error);
    } else {
        Console::writeLine(QByteArray());
        for (const QString &line : qAsConst(m_due))
            Console::writeLine(line);
        Console::writeLine(QByteArray());
        Console::writeLine(tr("Screenshots: %1").arg(m_folder));
    }
    emit finished(exitCode);
}
