#pragma once

#include "garagectl/findings/finding.h"

#include <vector>

/// What is known of a kind of finding before any file is read; UTF-8, by language.
struct FindingText
{
    using ByLanguage = const char *[2]; ///< English, Russian

    const char *id;
    Finding::Severity severity;
    ByLanguage title; ///< at most 44 cells wide
    ByLanguage harm;
    ByLanguage remedy;
    const char *sql = nullptr;

    Finding finding(qint64 count, const QStringList &examples) const;
};

/// The finding of that id, which must be in the list.
Finding findingOf(const std::vector<FindingText> &texts, const char *id, qint64 count,
                  const QStringList &examples);
