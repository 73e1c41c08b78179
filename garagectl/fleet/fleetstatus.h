#pragma once

#include "data/garagedatabase.h"
#include "data/records.h"

/// The data of the module's statistics loader at one moment.
struct FleetStatus
{
    QList<MaintainanceItem> cars;
    QList<ModelReglament> reglament;
    ServiceOperations operations;
};

/// Reads with the functions of the loader. Throws Failure if a table is missing.
FleetStatus readFleetStatus(const GarageDatabase &database);
