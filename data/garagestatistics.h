#pragma once

#include "data/garagedatabase.h"
#include "data/records.h"

/// Reads the records of the maintenance statistics. A statement that fails yields nothing; values
/// that are NULL or do not convert read as 0, empty text or an invalid date-time.
namespace GarageStatistics {

/// All cars in the order of the table, with no operations yet.
[[nodiscard]] QList<MaintainanceItem> readCars(const GarageDatabase &database);
/// Adds to each car, per operation, its latest record and the figures since.
void readDrivingSinceService(const GarageDatabase &database, QList<MaintainanceItem> &cars);
/// The service log, newest record first.
[[nodiscard]] QList<ServiceLogItem> readServiceLog(const GarageDatabase &database);
/// The schedule, one entry per car model.
[[nodiscard]] QList<ModelReglament> readReglament(const GarageDatabase &database);
[[nodiscard]] ServiceOperations readOperations(const GarageDatabase &database);

/// The SQL of the functions above, but readOperations().
[[nodiscard]] QStringList statements();
/// That of readDrivingSinceService() alone, which reads the laps.
[[nodiscard]] QString drivingStatement();

} // namespace GarageStatistics
