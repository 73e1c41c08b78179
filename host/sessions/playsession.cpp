#include "host/sessions/playsession.h"

#include "host/app/demohost.h"
#include "host/sessions/screenshot.h"
#include "host/terminal/console.h"
#include "host/terminal/exitcode.h"

PlaySession::PlaySession(DemoHost &host, const HostHome &home, const QString &fileName,
                         const QString &screenshots)
    : m_host(host)
    , m_window(host, home)
    , m_player(host.plugin())
    , m_watch(host.plugin())
    , m_fileName(fileName)
    , m_screenshots(screenshots)
{
    connect(&host.plugin(), &PluginHost::received, this,
            [](const HostMessage &message) { Console::writeLine(message.toJsonLine()); });
    connect(&m_player, &EventPlayer::screenshotWanted, this, &PlaySession::saveScreenshot);
    connect(&m_player, &EventPlayer::finished, this, [this](bool allAnswered) {
        m_allAnswered = allAnswered;
        m_watch.finishWhenQuiet();
    });
    connect(&m_watch, &AnswerWatch::finished, this, [this](bool allAnswered) {
        m_allAnswered = m_allAnswered && allAnswered;
        end();
    });
}

void PlaySession::start()
{
    const QString error = m_player.load(m_fileName);
    if (!error.isEmpty()) {
        Console::complain(error);
        emit finished(ExitCode::BadInput);
        return;
    }
    m_window.start();
    m_player.start();
}

void PlaySession::saveScreenshot(const QString &name)
{
    const QString error = Screenshot::save(m_window, m_screenshots, name);
    if (error.isEmpty())
        return;
    m_allPhotographed = false;
    Console::complain(error);
}

void PlaySession::end()
{
    const int pictureCode = m_allPhotographed ? ExitCode::Ok : ExitCode::NoPicture;
    if (!m_allAnswered)
        Console::complain(tr("плагин не ответил"));
    emit finished(m_allAnswered ? pictureCode : ExitCode::NoAnswer);
}
