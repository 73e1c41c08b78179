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

enum class SampleOutcome { Made, Cancelled, Failed };
Q_DECLARE_METATYPE(SampleOutcome)

/// Told how far the making is, in per cent; false cancels it and leaves the file as it was.
using SampleProgress = std::function<bool(int percent)>;

/// Fills a blank database with a kart track's believable past. The same kind, seed and `now` give the same
/// data. Runs in the thread of the connection.
SampleOutcome makeSampleData(HostConnection &connection, SampleKind kind, quint32 seed, const QDateTime &now,
                             const SampleProgress &progress);
