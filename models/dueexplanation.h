#pragma once

#include "data/records.h"

#include <QCoreApplication>
#include <QStringList>

/// Explains to the user why a cell of the maintenance table is red, and what is left, line by line.
class DueExplanation final
{
    Q_DECLARE_TR_FUNCTIONS(DueExplanation)
public:
    /// One line per limit that is set: what was driven, and what is left or by how much it is exceeded. A
    /// line contains "превышено" only if the operation is due by DueRule::isDue().
    static QStringList limitLines(const OperationStat &stat, const Limits &limits);
    /// The limits of an operation that was never recorded.
    static QStringList limitLines(const Limits &limits);
    /// When the operation was last done or requested, and by whom. `record` is the latest one, null if it is
    /// not known.
    static QString lastWork(const OperationStat &stat, const ServiceLogItem *record);
    /// An open complaint or task: date and person, then its text. A long text is shortened.
    static QString openWork(const OperationStat &stat, const ServiceLogItem *record);
    /// "1 ч 30 мин"; seconds only if there are no minutes.
    static QString duration(qint64 seconds);
};
