#include "garagectl/database/fileproof.h"

#include "garagectl/database/select.h"

QStringList FileProof::faults(const GarageDatabase &database)
{
    QStringList faults;
    Select::forEachRow(database, QStringLiteral("PRAGMA integrity_check(100)"),
                       [&faults](const QSqlQuery &row) { faults.append(row.value(0).toString()); });
    faults.removeAll(QStringLiteral("ok"));
    return faults;
}

QVector<FileProof::TableRows> FileProof::rowCounts(const GarageDatabase &database)
{
    QVector<TableRows> tables;
    Select::forEachRow(
        database,
        QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' "
                       "ESCAPE '\\' ORDER BY name"),
        [&tables](const QSqlQuery &row) { tables.append({row.value(0).toString()}); });
    for (TableRows &table : tables) {
        const QString statement = QLatin1String("SELECT count(*) FROM ") + Select::quotedName(table.table);
        table.rows = Select::firstValue(database, statement).toLongLong();
    }
    return tables;
}

QStringList FileProof::garageTables()
{
    return {QStringLiteral("cars"),
            QStringLiteral("laps"),
            QStringLiteral("personal"),
            QStringLiteral("maintainance"),
            QStringLiteral("service_operations"),
            QStringLiteral("service_reglament")};
}
