#pragma once

#include <QLatin1String>
#include <QString>

/// The keys that identify the columns of every table; a column's position has no meaning.
namespace ColumnKeys {

inline const QLatin1String position("POS"); ///< "#", the 1-based number of the visible row
inline const QLatin1String model("MODEL");
inline const QLatin1String number("NUM");
inline const QLatin1String time("TIME");
inline const QLatin1String operationName("OPNAME");
inline const QLatin1String personName("PERSONNAME");
inline const QLatin1String comment("COMMENT");
inline const QLatin1String name("NAME");

/// Key of the column of one service operation: "OP_" and the id.
[[nodiscard]] QString operation(int opId);
/// True for a key that begins as those of operation columns do.
[[nodiscard]] bool isOperation(const QString &key);
/// The id in the key of an operation column; -1 if the key holds none.
[[nodiscard]] int operationId(const QString &key);

} // namespace ColumnKeys
