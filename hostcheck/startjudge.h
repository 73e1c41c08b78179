#pragma once

#include <QStringList>

class Findings;

/// Judges how the host loads the plug-in and begins to talk to it.
class StartJudge final
{
public:
    explicit StartJudge(Findings &findings) : m_findings(findings) { }

    /// Called from the constructor of the root object. False if the plug-in must not make widgets.
    bool judgeLoading();
    void noteCast() { m_isCast = true; }
    /// `isConnected`: something receives the plug-in's messages.
    void judgeMessage(const QString &event, bool isConnected);
    void judgeEnd();

private:
    void judgeLoadComplete(bool isConnected);

    Findings &m_findings;
    QStringList m_earlyEvents; ///< before load_complete, each once
    bool m_isCast = false;
    bool m_isLoadComplete = false;
};
