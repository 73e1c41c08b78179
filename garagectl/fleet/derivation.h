#pragma once

#include "garagectl/fleet/duerow.h"

#include <QDateTime>

/// Why a lap counts or does not. In this order the first that applies is the reason.
enum class LapVerdict {
    Counted,
    TimeUnreadable, ///< no date and time, and not greater than the record's as a text
    NoLapTime, ///< lap time missing, zero, or negative
    BeforeRecord ///< before the record, or exactly at its time
};

/// The laps of one kart with the same verdict.
struct LapGroup
{
    LapVerdict verdict = LapVerdict::Counted;
    int laps = 0;
    int runs = 0;
    int unreadable = 0; ///< those whose time is no date and time
    QString first; ///< as stored
    QString last;
};

/// Everything that decides whether an operation of a kart is due.
struct Derivation
{
    DueRow row; ///< as the module has it
    int recordCount = 0; ///< of this kart and operation
    int latestCount = 0; ///< of these, how many have the latest time
    QString latestTime; ///< as stored
    QString person;
    QVector<LapGroup> laps; ///< empty without a record
    bool isListedByFilter =
        false; ///< the window's filter for karts that need service lists the kart for this
};

/// Reads what `row` does not hold. Only in the transaction in which the row was read do both agree.
Derivation readDerivation(const GarageDatabase &database, const DueRow &row);
