#pragma once

#include "host/app/hostwindow.h"
#include "host/sessions/hostsession.h"
#include "host/sessions/screenshottour.h"

/// The run without a display, or with --screenshots: prints the due services and saves screenshots.
class TourSession final : public HostSession
{
    Q_OBJECT
public:
    TourSession(DemoHost &host, const DataFolder &folder, const QString &screenshots,
                const QSize &windowSize);

    void start() override;

private:
    void handleMessage(const HostMessage &message);
    void finish(int exitCode, const QString &error);

    DemoHost &m_host;
    HostWindow m_window;
    ScreenshotTour m_tour;
    const QString m_folder;
    QStringList m_due; // lines of the first report
};
