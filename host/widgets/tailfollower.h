#pragma once

#include <QObject>

class QAbstractScrollArea;
class QScrollBar;

/// Keeps the end of a log visible as it grows or is resized, unless the user has scrolled up. Scrolling back
/// to the end resumes. Owned by the area.
class TailFollower final : public QObject
{
    Q_OBJECT
public:
    explicit TailFollower(QAbstractScrollArea &area);

private:
    QScrollBar *m_bar;
    bool m_follows = true;
};
