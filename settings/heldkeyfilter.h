#pragma once

#include <QObject>

/// While it exists, repetitions of a Return, Enter or Space that is held since before are delivered to no
/// widget: a key that opens a dialog would otherwise click its default button or type into it. Once one of
/// these keys is released or pressed again, all events are delivered. GUI thread only.
class HeldKeyFilter final : public QObject
{
    Q_OBJECT
public:
    HeldKeyFilter();

    bool eventFilter(QObject *watched, QEvent *event) override;
};
