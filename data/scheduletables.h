#pragma once

#include "data/garagedatabase.h"
#include "data/records.h"

#include <QStringList>
#include <QVector>

#include <optional>

/// One row of `service_operations`.
struct ServiceOperation
{
    int id = noId;
    QString name;
};

/// One row of `service_reglament`.
struct StoredLimit
{
    QString model;
    int opId = noId;
    int timeLimit = 0; ///< seconds of driving
    int runsLimit = 0;
    int lapsLimit = 0;
};

/// Reading and writing of the service operations and of the reglament. Reading that fails gives nothing;
/// each write is a transaction of its own, in which a failing statement is ignored.
namespace ScheduleTables {

QVector<ServiceOperation> readOperations(const GarageDatabase &database);
/// Every car model once, in no particular order.
QStringList readCarModels(const GarageDatabase &database);
QVector<StoredLimit> readLimits(const GarageDatabase &database);

/// The id of the new operation; nothing if it was not stored.
std::optional<int> addOperation(GarageDatabase &database, const QString &name);
void renameOperation(GarageDatabase &database, int opId, const QString &name);
/// The operation's limits stay.
void removeOperation(GarageDatabase &database, int opId);
void storeLimit(GarageDatabase &database, const StoredLimit &limit);

} // namespace ScheduleTables
