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
    QString model; ///< null for NULL, which is another model than an empty text
    int opId = noId;
    Limits limits;
};

/// Reads and writes the service operations and the reglament. A read that fails yields nothing, and sets
/// `wasBusy` if it failed because the database was busy; each write is a transaction of its own, in which a
/// failing statement is ignored.
namespace ScheduleTables {

[[nodiscard]] QVector<ServiceOperation> readOperations(const GarageDatabase &database,
                                                       bool *wasBusy = nullptr);
/// Every car model once, in no particular order.
[[nodiscard]] QStringList readCarModels(const GarageDatabase &database, bool *wasBusy = nullptr);
[[nodiscard]] QVector<StoredLimit> readLimits(const GarageDatabase &database, bool *wasBusy = nullptr);

/// The id of the new operation; nothing if it was not stored.
[[nodiscard]] std::optional<int> addOperation(GarageDatabase &database, const QString &name);
void renameOperation(GarageDatabase &database, int opId, const QString &name);
/// The operation's limits stay.
void removeOperation(GarageDatabase &database, int opId);
void storeLimit(GarageDatabase &database, const StoredLimit &limit);

} // namespace ScheduleTables
