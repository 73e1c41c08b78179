#include "host/widgets/tailfollower.h"

#include <QAbstractScrollArea>
#include <QScrollBar>

TailFollower::TailFollower(QAbstractScrollArea &area) : QObject(&area), m_bar(area.verticalScrollBar())
{
    // A longer log changes the range only, the user the value only.
    connect(m_bar, &QScrollBar::valueChanged, this,
            [this](int value) { m_follows = value == m_bar->maximum(); });
    connect(m_bar, &QScrollBar::rangeChanged, this, [this](int, int end) {
        if (m_follows)
            m_bar->setValue(end);
    });
}
