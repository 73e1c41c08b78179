#pragma once

#include "data/garagedatabase.h"

#include <QVariant>

#include <functional>

/// Reading whose failures are not passed over, unlike those of GarageDatabase::run().
namespace Select {

/// Calls the function for each row. Throws the QSqlError of a statement that fails.
void forEachRow(const GarageDatabase &database, const QString &statement,
                const std::function<void(const QSqlQuery &row)> &function);
/// The first column of the first row; invalid if there is none. Throws like forEachRow().
QVariant firstValue(const GarageDatabase &database, const QString &statement);

/// A name of a table or column as SQL.
QString quotedName(const QString &name);

} // namespace Select
