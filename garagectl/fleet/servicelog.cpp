#include "garagectl/fleet/servicelog.h"

#include "data/garagestatistics.h"
#include "garagectl/database/readonlyfile.h"
#include "garagectl/wording.h"

QList<ServiceLogItem> readServiceLog(const GarageDatabase &database)
{
    ReadOnlyFile::requireTables(database,
                                {QStringLiteral("cars"), QStringLiteral("maintainance"),
                                 QStringLiteral("personal"), QStringLiteral("service_operations")});
    return GarageStatistics::readServiceLog(database);
}

QString operationText(const ServiceLogItem &item)
{
    return item.opId == complaintOperationId ? text("complaint", "жалоба") : item.opName;
}
