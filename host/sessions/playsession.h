#pragma once

#include "host/app/hostwindow.h"
#include "host/messages/eventplayer.h"
#include "host/sessions/hostsession.h"

/// Shows the window, plays a file of events to the plug-in and prints the plug-in's messages.
class PlaySession final : public HostSession
{
    Q_OBJECT
public:
    PlaySession(DemoHost &host, const DataFolder &folder, const QString &fileName,
                const QString &screenshots);

    void start() override;

private:
    void saveScreenshot(const QString &name);
    void end();

    DemoHost &m_host;
    HostWindow m_window;
    EventPlayer m_player;
    AnswerWatcher m_watcher;
    const QString m_fileName;
    const QString m_screenshots;
    bool m_allAnswered = true;
    bool m_allSaved = true;
};
