#pragma once

#include "data/garagedatabase.h"
#include "data/records.h"

/// The whole service log, newest first, read with the function of the loader. Throws Failure if a table is
/// missing.
QList<ServiceLogItem> readServiceLog(const GarageDatabase &database);

/// The operation's name; "complaint" for a complaint.
QString operationText(const ServiceLogItem &item);
