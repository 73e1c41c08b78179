#pragma once

#include <QString>
#include <QStringList>

/// Tests a garage plug-in from outside, check by check, and prints a report.
namespace Validation {

constexpr int defaultTimeLimit = 30; // seconds for each check

struct Request
{
    QString library;
    QStringList checkNames; // empty: all
    int timeLimit = defaultTimeLimit;
    QString language; // of the reasons
    bool asJson = false;
};

/// Prints a line for each check and the counts, or one JSON object. An exit code.
int run(const Request &request);

} // namespace Validation
