#pragma once

#include "host/sample/samplecatalogue.h"

#include <QDateTime>
#include <QMetaType>
#include <QString>

#include <functional>

class HostConnection;

enum class SampleKind {
    Empty, // tables only
    Sample, // 24 karts, some weeks
    Season // 60 karts, 3,000,000 laps, 20,000 records
};

enum class SampleOutcome { Done, Cancelled, Failed };
Q_DECLARE_METATYPE(SampleOutcome)

/// Called with the progress in per cent; returning false cancels and leaves the file unchanged.
using SampleProgress = std::function<bool(int percent)>;

/// Fills a blank database with the plausible past of a kart track. The same kind, seed and `now` yield the
/// same data. Call in the thread of the connection.
SampleOutcome generateSampleData(HostConnection &connection, SampleKind kind, quint32 seed,
                                 const QDateTime &now, const SampleProgress &progress);
