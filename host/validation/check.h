#pragma once

#include <QString>
#include <QVector>

class CheckStage;

/// One thing that a garage plug-in must do, tried from outside. run() returns if all is well and throws
/// CheckFailed or CheckSkipped otherwise.
struct Check
{
    QString name; // for the command line
    QString title; // what holds if it passes, in plain words
    void (*run)(CheckStage &stage);
};

/// Why the plug-in does not pass.
struct CheckFailed
{
    QString reason;
};

/// Why the check says nothing about this plug-in.
struct CheckSkipped
{
    QString reason;
};

/// Every check in the order of the report; the first says whether the library loads at all.
const QVector<Check> &allChecks();
/// The check of that name, or null.
const Check *findCheck(const QString &name);

QVector<Check> libraryChecks();
QVector<Check> messageChecks();
QVector<Check> windowChecks();
QVector<Check> databaseChecks();
