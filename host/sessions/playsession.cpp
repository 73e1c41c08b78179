#include "host/sessions/playsession.h"

#include "host/app/demohost.h"
#include "host/terminal/console.h"
#include "host/terminal/exitcode.h"

PlaySession::PlaySession(DemoHost &host, const DataFolder &folder, const QString &fileName,
                         const QString &screenshots)
    : m_host(host)
    , m_window(host, folder)
    , m_player(host.plugin())
    , m_watcher(host.plugin())
    , m_fileName(fileName)
    , m_screenshots(screenshots)
{
    connect(&host.plugin(), &PluginHost::received, this,
            [](const HostMessage &message) { Console::writeLine(message.toJsonLine()); });
    connect(&m_player, &EventPlayer::screenshotWanted, this, &PlaySession::saveScreenshot);
    connect(&m_player, &EventPlayer::finished, this, [this](bool allAnswered) {
        m_allAnswered = allAnswered;
        m_watcher.finishWhenIdle();
    });
    connect(&m_watcher, &AnswerWatcher::finished, this, [this](bool allAnswered) {
        m_allAnswered = m_allAnswered && allAnswered;
        end();
    });
}

void PlaySession::start()
{
    if (const Result result = m_player.load(m_fileName); !result) {
        Console::writeError(result.errorText());
        emit finished(ExitCode::BadInput);
        return;
    }
    m_window.start();
    m_player.start();
}

void PlaySession::saveScreenshot(const QString &name)
{
    const Result result = m_window.saveScreenshot(m_screenshots, name);
    if (result)
        return;
    m_allSaved = false;
    Console::writeError(result.errorText());
}

void PlaySession::end()
{
    const int pictureCode = m_allSaved ? ExitCode::Ok : ExitCode::NoPicture;
    if (!m_allAnswered)
        Console::writeError(tr("the plug-in did not answer"));
    emit finished(m_allAnswered ? pictureCode : ExitCode::NoAnswer);
}
