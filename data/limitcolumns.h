#pragma once

#include "data/records.h"
#include "data/selectedcolumn.h"

/// The limits of the current row of a "SELECT *" from `service_reglament`.
class LimitColumns final
{
public:
    explicit LimitColumns(const QSqlQuery &query)
        : m_seconds(query, QStringLiteral("time_limit"))
        , m_runs(query, QStringLiteral("runs_limit"))
        , m_laps(query, QStringLiteral("laps_limit"))
    {
    }

    Limits limits() const { return {m_seconds.toInt(), m_runs.toInt(), m_laps.toInt()}; }

private:
    const SelectedColumn m_seconds;
    const SelectedColumn m_runs;
    const SelectedColumn m_laps;
};
