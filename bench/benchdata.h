#pragma once

#include <QString>

/// The size of a generated garage database. The same shape always yields the same rows.
struct BenchShape
{
    const char *name;
    int cars;
    int operations;
    int records;
    int laps;
    int commentLines = 0; ///< at most, of every record; 0: one short line in a fifth of the records
    int hugeComment = 0; ///< bytes of the newest record's comment; 0: as the others
    int serviceDays = 0; ///< most days since the latest record of an operation; 0: any number
    int olderLaps = 0; ///< from the time before the season, as many per day as in it
};

/// A season of laps, a long journal, and many cars with every operation recorded.
inline constexpr BenchShape lapsShape {"laps", 60, 12, 20000, 3000000};
inline constexpr BenchShape journalShape {"journal", 60, 12, 100000, 20000};
inline constexpr BenchShape wideShape {"wide", 500, 30, 15000, 500000};

/// The wide table with few laps: the window shows the same, and a reload is fast.
inline constexpr BenchShape wideTableShape {"wide-table", 500, 30, 15000, 10000};

/// A service log in which every comment has several lines, and one with a comment of a megabyte at its top.
inline constexpr BenchShape notesShape {"notes", 60, 12, 100000, 20000, 8};
inline constexpr BenchShape hugeNoteShape {"huge-note", 60, 12, 100000, 20000, 8, 1 << 20};

/// Enough of everything for counting instructions.
inline constexpr BenchShape smallShape {"small", 40, 12, 2000, 5000};

/// A home folder whose documents hold the garage database of a shape, made on first use and kept between
/// runs; null text on failure ends the program.
class BenchHome final
{
public:
    explicit BenchHome(const BenchShape &shape);

    /// Makes this the home in which the module finds its database.
    void enter() const;
    QByteArray databasePath() const;

private:
    QString m_path;
};
