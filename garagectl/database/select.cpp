#include "garagectl/database/select.h"

#include <QSqlError>

void Select::forEachRow(const GarageDatabase &database, const QString &statement,
                        const std::function<void(const QSqlQuery &row)> &function)
{
    QSqlQuery query = database.run(statement);
    if (!query.isActive())
        throw query.lastError();
    while (query.next())
        function(query);
    if (query.lastError().isValid())
        throw query.lastError();
}

QVariant Select::firstValue(const GarageDatabase &database, const QString &statement)
{
    QVariant value;
    forEachRow(database, statement, [&value](const QSqlQuery &row) {
        if (!value.isValid())
            value = row.value(0);
    });
    return value;
}

QString Select::quotedName(const QString &name)
{
    QString doubled = name;
    doubled.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + doubled + QLatin1Char('"');
}
