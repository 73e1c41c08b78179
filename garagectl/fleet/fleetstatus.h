#pragma once

#include "data/garagedatabase.h"
#include "data/records.h"

/// What the module's statistics loader works from, of one moment.
struct FleetStatus
{
    QList<MaintainanceItem> cars;
    QList<ModelReglament> reglament;
    ServiceOperations operations;
};

/// Reads with the functions of the loader. Throws Failure if a table is missing.
FleetStatus readFleetStatus(const GarageDatabase &database);
