#pragma once

#include "bytereader.h"

#include <QTimer>
#include <QWidget>

#include <functional>

/// Simulates a user by bytes: clicks and keys on the module's widgets, and an answer to each dialog and menu
/// that opens, sent from within its own event loop.
class FuzzedUser final
{
    Q_DISABLE_COPY(FuzzedUser)
public:
    using HostAct = std::function<void(ByteReader &)>;

    /// `whileOpen` performs the host's actions while a dialog is open.
    explicit FuzzedUser(HostAct whileOpen);

    /// Sets the bytes that the user consumes from now on.
    void follow(ByteReader &bytes) { m_bytes = &bytes; }
    /// One action on one of the widgets in the window.
    void act(QWidget &window);
    int answeredDialogs() const { return m_answered; }

private:
    void watchWith(QTimer &timer);
    void answer();
    void answerDialog(QWidget &dialog);
    void useChildren(QWidget &window);

    const HostAct m_whileOpen;
    QTimer m_watch;
    ByteReader *m_bytes = nullptr;
    int m_answered = 0;
    int m_depth = 0; ///< of dialogs opened while another is answered
};
