#pragma once

#include "host/result.h"

#include <QObject>
#include <QTimer>
#include <QVector>

#include <functional>

class HostConnection;

/// Writes that survive a lock: a write that finds the file locked by another program is repeated until it
/// succeeds, or fails for another reason. Blocks its thread for a tenth of a second at most per attempt.
class RetriedWrites final : public QObject
{
    Q_OBJECT
public:
    using Write = std::function<Result()>;
    using Finished = std::function<void(const Result &)>;

    explicit RetriedWrites(HostConnection &connection, QObject *parent = nullptr);
    /// Tries once more what still waits, and warns of what then is lost.
    ~RetriedWrites() override;

    /// Runs the write from the event loop, after those requested before, and then calls `finished` with its
    /// result.
    void add(const Write &write, const Finished &finished);

signals:
    /// The file is locked; the write is repeated.
    void delayed(const QString &reason);

private:
    struct Entry
    {
        Write write;
        Finished finished;
    };

    void runWaiting();
    Result attempt(const Write &write);

    HostConnection &m_connection;
    QVector<Entry> m_waiting;
    QTimer m_timer;
};
