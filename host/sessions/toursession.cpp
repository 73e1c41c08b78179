#include "host/sessions/toursession.h"

#include "host/app/demohost.h"
#include "host/database/datafolder.h"
#include "host/sessions/duetable.h"
#include "host/terminal/console.h"

TourSession::TourSession(DemoHost &host, const DataFolder &folder, const QString &screenshots)
    : m_host(host), m_window(host, folder), m_tour(host, m_window, screenshots, !folder.isUserDocuments())
{
    connect(&host.plugin(), &PluginHost::received, this, &TourSession::printDue);
    connect(&m_tour, &ScreenshotTour::saved, this,
            [](const QString &fileName) { Console::writeLine(tr("Снимок: %1").arg(fileName)); });
    connect(&m_tour, &ScreenshotTour::finished, this, [this](int exitCode, const QString &error) {
        if (!error.isEmpty())
            Console::writeError(error);
        emit finished(exitCode);
    });
}

void TourSession::start()
{
    m_window.start();
    m_tour.start();
}

void TourSession::printDue(const HostMessage &message)
{
    if (m_hasPrinted || message.event != QLatin1String("update_pending_service"))
        return;
    m_hasPrinted = true;
    for (const QString &line : DueTable(m_host.connection()).lines(message.data))
        Console::writeLine(line);
}
