#include "data/scheduletables.h"

#include "data/immediatetransaction.h"
#include "data/limitcolumns.h"
#include "data/selectedcolumn.h"

namespace {

const QString selectOperations = QStringLiteral("SELECT * FROM service_operations");
const QString selectCarModels = QStringLiteral("SELECT DISTINCT name FROM cars");
const QString selectLimits = QStringLiteral("SELECT * FROM service_reglament");

const QString insertOperation =
    QStringLiteral("INSERT INTO service_operations (operation_name) VALUES (:opn)");
const QString replaceOperation =
    QStringLiteral("REPLACE INTO service_operations (id,operation_name) VALUES (:id,:opn)");
const QString deleteOperation = QStringLiteral("DELETE FROM service_operations WHERE id=:id");
const QString replaceLimit =
    QStringLiteral("REPLACE INTO service_reglament (model,operation_id,time_limit,runs_limit,laps_limit) "
                   "VALUES (:mdl,:opid,:tlim,:rlim,:llim)");

QSqlQuery select(const GarageDatabase &database, const QString &statement, bool *wasBusy)
{
    QSqlQuery query = database.run(statement);
    if (wasBusy && !query.isActive() && isBusy(query.lastError()))
        *wasBusy = true;
    return query;
}

} // namespace

QVector<ServiceOperation> ScheduleTables::readOperations(const GarageDatabase &database, bool *wasBusy)
{
    QVector<ServiceOperation> operations;
    QSqlQuery query = select(database, selectOperations, wasBusy);
    const SelectedColumn id(query, QStringLiteral("id"));
    const SelectedColumn name(query, QStringLiteral("operation_name"));
    while (database.next(query))
        operations.append({id.toInt(), name.toString()});
    return operations;
}

QStringList ScheduleTables::readCarModels(const GarageDatabase &database, bool *wasBusy)
{
    QStringList models;
    QSqlQuery query = select(database, selectCarModels, wasBusy);
    while (database.next(query))
        models.append(query.value(0).toString());
    return models;
}

QVector<StoredLimit> ScheduleTables::readLimits(const GarageDatabase &database, bool *wasBusy)
{
    QVector<StoredLimit> limits;
    QSqlQuery query = select(database, selectLimits, wasBusy);
    const SelectedColumn model(query, QStringLiteral("model"));
    const SelectedColumn opId(query, QStringLiteral("operation_id"));
    const LimitColumns columns(query);
    while (database.next(query))
        limits.append({model.toString(), opId.toInt(), columns.limits()});
    return limits;
}

std::optional<int> ScheduleTables::addOperation(GarageDatabase &database, const QString &name)
{
    const QVariant id = writeStatement(database, insertOperation, {{QLatin1String(":opn"), name}});
    if (!id.isValid())
        return std::nullopt;
    return id.toInt();
}

void ScheduleTables::renameOperation(GarageDatabase &database, int opId, const QString &name)
{
    writeStatement(database, replaceOperation, {{QLatin1String(":id"), opId}, {QLatin1String(":opn"), name}});
}

void ScheduleTables::removeOperation(GarageDatabase &database, int opId)
{
    writeStatement(database, deleteOperation, {{QLatin1String(":id"), opId}});
}

void ScheduleTables::storeLimit(GarageDatabase &database, const StoredLimit &limit)
{
    writeStatement(database, replaceLimit,
                   {{QLatin1String(":mdl"), limit.model.isNull() ? QVariant() : QVariant(limit.model)},
                    {QLatin1String(":opid"), limit.opId},
                    {QLatin1String(":tlim"), limit.limits.seconds},
                    {QLatin1String(":rlim"), limit.limits.runs},
                    {QLatin1String(":llim"), limit.limits.laps}});
}
