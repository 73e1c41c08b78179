#pragma once

#include <QTimer>

/// Accepts or rejects the next modal dialog, which blocks the call that opens it.
class DialogResponder final
{
public:
    explicit DialogResponder(bool accept);

    bool hasResponded() const { return m_responded; }

private:
    void respond(bool accept);

    QTimer m_poll;
    bool m_responded = false;
};
