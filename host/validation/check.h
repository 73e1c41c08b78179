#pragma once

#include <QString>
#include <QVector>

#include <optional>

class CheckContext;

/// One requirement on a garage plug-in, tested from outside. run() returns if the plug-in meets it and throws
/// CheckFailed or CheckSkipped otherwise.
struct Check
{
    QString name; // for the command line
    QString title; // the requirement as a sentence
    void (*run)(CheckContext &context);
};

/// Thrown by a check that the plug-in fails.
struct CheckFailed
{
    QString reason;
};

/// Thrown by a check that cannot be performed.
struct CheckSkipped
{
    QString reason;
};

/// Every check in the order of the report, with titles in the current language. The first tests whether the
/// library loads.
QVector<Check> allChecks();
/// The check of that name, or nothing.
std::optional<Check> findCheck(const QString &name);

QVector<Check> libraryChecks();
QVector<Check> messageChecks();
QVector<Check> windowChecks();
QVector<Check> databaseChecks();
