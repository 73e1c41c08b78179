#pragma once

#include "host/validation/checkprocess.h"

#include <QJsonArray>

#include <array>

/// Collects the results of a validation. Prints each result at once, or all as one JSON object at the end.
class ValidationReport final
{
public:
    explicit ValidationReport(bool asJson) : m_asJson(asJson) { }

    void add(const Check &check, const CheckResult &result);
    /// Prints the totals, or the JSON object.
    void finish(const QString &library) const;
    int count(CheckResult::Outcome outcome) const { return m_counts.at(std::size_t(outcome)); }

private:
    const bool m_asJson;
    std::array<int, CheckResult::OutcomeCount> m_counts {};
    QJsonArray m_checks;
};
