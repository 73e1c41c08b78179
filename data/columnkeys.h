#pragma once

#include <QLatin1String>
#include <QString>

/// The texts by which every table knows its columns; a column's position means nothing.
namespace ColumnKeys {

constexpr QLatin1String position("POS"); ///< "#", the 1-based number of the visible row
constexpr QLatin1String model("MODEL");
constexpr QLatin1String number("NUM");
constexpr QLatin1String time("TIME");
constexpr QLatin1String operationName("OPNAME");
constexpr QLatin1String personName("PERSONNAME");
constexpr QLatin1String comment("COMMENT");
constexpr QLatin1String name("NAME");

/// Key of the column of one service operation: "OP_" and the id.
QString operation(int opId);
/// True for a key that begins as those of operation columns do.
bool isOperation(const QString &key);
/// The id in the key of an operation column; -1 if the key holds none.
int operationId(const QString &key);

} // namespace ColumnKeys
