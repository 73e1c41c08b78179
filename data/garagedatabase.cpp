#include "data/garagedatabase.h"

#include <QDir>
#include <QStandardPaths>

QString garageDatabasePath()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir(documents + QLatin1String("/Ruvalo-QT")).path() + QLatin1String("/DB/ruvalo.sqlite");
}

GarageDatabase::GarageDatabase(const QString &connectionName)
    : m_connectionName(connectionName)
    , m_database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName))
{
    m_database.setDatabaseName(garageDatabasePath());
    open();
}

GarageDatabase::~GarageDatabase()
{
    m_database.close();
    m_database = QSqlDatabase(); // the last handle must be gone before the connection is removed
    QSqlDatabase::removeDatabase(m_connectionName);
}

void GarageDatabase::ensureOpen()
{
    if (!m_database.isOpen())
        open();
}

void GarageDatabase::open()
{
    if (m_database.open())
        run(QStringLiteral("PRAGMA encoding=UTF8"));
}

QSqlQuery GarageDatabase::newQuery() const
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    return query;
}

QSqlQuery GarageDatabase::run(const QString &statement) const
{
    QSqlQuery query = newQuery();
    if (isOpen())
        query.exec(statement);
    return query;
}
