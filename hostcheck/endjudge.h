#pragma once

#include <functional>

class Findings;

/// Judges how the host ends: whether it unloads the plug-in, and whether the application object still exists
/// then. At most one object exists at a time.
class EndJudge final
{
public:
    /// `applicationEnds` is called while the application object is being destroyed; `processExits` in exit(),
    /// when no widget may be touched. Neither is called after the other unless in this order.
    EndJudge(Findings &findings, std::function<void()> applicationEnds, std::function<void()> processExits);
    ~EndJudge();

    /// Called from the root object's destructor.
    void judgeDestruction();
    bool isProcessExiting() const;

private:
    static void endApplication();
    static void exitProcess();

    Findings &m_findings;
    const std::function<void()> m_applicationEnds;
    const std::function<void()> m_processExits;
    bool m_hasApplicationEnded = false;
};
