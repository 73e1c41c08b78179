#include "host/sample/samplejob.h"

#include "host/database/hostconnection.h"

#include <utility>

SampleJob::SampleJob(const QString &databasePath, SampleKind kind, quint32 seed, QObject *parent)
    : QObject(parent), m_path(databasePath), m_kind(kind), m_seed(seed)
{
    qRegisterMetaType<SampleOutcome>();
}

SampleJob::~SampleJob()
{
    cancel();
    if (m_thread)
        m_thread->wait();
}

void SampleJob::start()
{
    m_thread.reset(QThread::create([this] { emit finished(generate()); }));
    m_thread->start();
}

SampleOutcome SampleJob::generate()
{
    HostConnection connection(m_path);
    // Durability is not needed for a new file: after a power failure it is generated again.
    connection.query(QStringLiteral("PRAGMA synchronous=OFF"));
    const auto report = [this, last = -1](int percent) mutable {
        if (std::exchange(last, percent) != percent)
            emit progress(percent);
        return !m_cancelled;
    };
    const SampleOutcome outcome =
        generateSampleData(connection, m_kind, m_seed, QDateTime::currentDateTimeUtc(), report);
    m_errorText = connection.errorText();
    return outcome;
}
