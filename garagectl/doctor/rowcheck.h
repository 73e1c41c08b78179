#pragma once

#include "data/garagedatabase.h"
#include "garagectl/findings/finding.h"

#include <vector>

/// Rows that contradict other rows.
namespace RowCheck {

struct Check
{
    const char *id; ///< of the finding
    const char *statement; ///< yields a number of rows and an example, once or several times
};

const std::vector<Check> &all();

/// Throws the QSqlError of a statement that fails.
Findings run(const GarageDatabase &database, const Check &check);

} // namespace RowCheck
