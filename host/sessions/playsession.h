#pragma once

#include "host/app/hostwindow.h"
#include "host/messages/eventplayer.h"
#include "host/sessions/hostsession.h"

/// Plays a file of events to the plug-in, with the window shown, and prints what the plug-in says.
class PlaySession final : public HostSession
{
    Q_OBJECT
public:
    PlaySession(DemoHost &host, const HostHome &home, const QString &fileName, const QString &screenshots);

    void start() override;

private:
    void saveScreenshot(const QString &name);
    void end();

    DemoHost &m_host;
    HostWindow m_window;
    EventPlayer m_player;
    AnswerWatch m_watch;
    const QString m_fileName;
    const QString m_screenshots;
    bool m_allAnswered = true;
    bool m_allPhotographed = true;
};
