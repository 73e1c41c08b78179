#pragma once

#include "data/garagedatabase.h"
#include "garagectl/findings/finding.h"

/// Tables, columns, types, defaults and keys. Throws the QSqlError of a statement that fails.
Findings checkSchema(const GarageDatabase &database);
