#pragma once

#include "host/sample/sampledata.h"

#include <QObject>
#include <QThread>

#include <atomic>
#include <memory>

/// Generates sample data in a thread and a connection of its own. The destructor cancels it.
class SampleJob final : public QObject
{
    Q_OBJECT
public:
    SampleJob(const QString &databasePath, SampleKind kind, quint32 seed, QObject *parent = nullptr);
    ~SampleJob() override;

    void start();
    /// Requests an early end; finished() is still emitted.
    void cancel() { m_cancelled = true; }
    /// Why it failed; valid after finished().
    QString errorText() const { return m_errorText; }

signals:
    void progress(int percent);
    void finished(SampleOutcome outcome);

private:
    SampleOutcome generate();

    const QString m_path;
    const SampleKind m_kind;
    const quint32 m_seed;
    std::atomic_bool m_cancelled {false};
    QString m_errorText;
    std::unique_ptr<QThread> m_thread;
};
