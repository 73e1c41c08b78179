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

    BenchShape scaled(double factor, const char *scaledName) const;
};

/// A season of laps, a long journal, and many cars with every operation recorded.
inline constexpr BenchShape lapsShape {"laps", 60, 12, 20000, 3000000};
inline constexpr BenchShape journalShape {"journal", 60, 12, 100000, 20000};
inline constexpr BenchShape wideShape {"wide", 500, 30, 15000, 500000};

/// The wide table with few laps: the window shows the same, and a reload is fast.
inline constexpr BenchShape wideTableShape {"wide-table", 500, 30, 15000, 10000};

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
