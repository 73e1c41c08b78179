#pragma once

#include "data/garagedatabase.h"

#include <QStringList>
#include <QVector>

/// What shows that a database file is whole.
namespace FileProof {

struct TableRows
{
    QString table;
    qint64 rows = 0;
};

/// What SQLite's integrity check finds, at most 100 faults; empty: nothing. Throws the QSqlError of a
/// statement that fails.
QStringList faults(const GarageDatabase &database);
/// The number of rows of each table, sorted by name. Throws like faults().
QVector<TableRows> rowCounts(const GarageDatabase &database);

/// The tables of the module and of its host, all of which a garage database has.
QStringList garageTables();

} // namespace FileProof
