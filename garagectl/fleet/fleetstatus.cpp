#include "garagectl/fleet/fleetstatus.h"

#include "data/garagestatistics.h"
#include "garagectl/database/readonlyfile.h"

FleetStatus readFleetStatus(const GarageDatabase &database)
{
    ReadOnlyFile::requireTables(database,
                                {QStringLiteral("cars"), QStringLiteral("laps"),
                                 QStringLiteral("maintainance"), QStringLiteral("service_operations"),
                                 QStringLiteral("service_reglament")});
    FleetStatus fleet;
    fleet.cars = GarageStatistics::readCars(database);
    GarageStatistics::readDrivingSinceService(database, fleet.cars);
    fleet.reglament = GarageStatistics::readReglament(database);
    fleet.operations = GarageStatistics::readOperations(database);
    return fleet;
}
