#pragma once

#include "host/app/hostwindow.h"
#include "host/sessions/hostsession.h"
#include "host/sessions/screenshottour.h"

/// For a machine without a display, or on request: prints what is due, saves pictures of the whole window.
class TourSession final : public HostSession
{
    Q_OBJECT
public:
    TourSession(DemoHost &host, const HostHome &home, const QString &screenshots);

    void start() override;

private:
    void printDue(const HostMessage &message);

    DemoHost &m_host;
    HostWindow m_window;
    ScreenshotTour m_tour;
    bool m_hasPrinted = false;
};
