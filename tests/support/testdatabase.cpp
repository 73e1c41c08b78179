#include "support/testdatabase.h"

#include <QFile>
#include <QSqlError>
#include <QSqlRecord>
#include <QStringList>
#include <QUuid>

TestDatabase::TestDatabase(const QString &path, bool createSchema)
    : m_connectionName(QUuid::createUuid().toString())
    , m_database(QSqlDatabase::addDatabase("QSQLITE", m_connectionName))
{
    m_database.setDatabaseName(path);
    if (!m_database.open())
        qFatal("Cannot open %s: %s", qPrintable(path), qPrintable(m_database.lastError().text()));
    if (createSchema) {
        for (const QString &statement : schema())
            exec(statement);
    }
}

TestDatabase::~TestDatabase()
{
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connectionName);
}

QSqlQuery TestDatabase::exec(const QString &statement, std::initializer_list<QVariant> values) const
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    bool done = query.prepare(statement);
    for (const QVariant &value : values)
        query.addBindValue(value);
    done = done && query.exec();
    if (!done)
        qFatal("%s: %s", qPrintable(statement), qPrintable(query.lastError().text()));
    return query;
}

bool TestDatabase::tryExec(const QString &statement) const
{
    return QSqlQuery(m_database).exec(statement);
}

QVariant TestDatabase::value(const QString &statement, std::initializer_list<QVariant> values) const
{
    QSqlQuery query = exec(statement, values);
    return query.next() ? query.value(0) : QVariant();
}

QStringList TestDatabase::rows(const QString &statement) const
{
    QStringList rows;
    QSqlQuery query = exec(statement);
    while (query.next()) {
        QStringList row;
        for (int column = 0; column < query.record().count(); ++column) {
            const QVariant value = query.value(column);
            row.append(value.isNull() ? "NULL" : value.toString());
        }
        rows.append(row.join('|'));
    }
    return rows;
}

int TestDatabase::addCar(int id, const QString &num, const QString &model) const
{
    exec("INSERT INTO cars (id,num,name) VALUES (?,?,?)", {id, num, model});
    return id;
}

int TestDatabase::addOperation(int id, const QString &name) const
{
    exec("INSERT INTO service_operations (id,operation_name) VALUES (?,?)", {id, name});
    return id;
}

void TestDatabase::addLimit(const QString &model, int opId, int seconds, int runs, int laps) const
{
    exec("INSERT INTO service_reglament (model,operation_id,time_limit,runs_limit,laps_limit) "
         "VALUES (?,?,?,?,?)",
         {model, opId, seconds, runs, laps});
}

int TestDatabase::addRecord(int carId, int opId, const QString &time, int state, const QString &comment) const
{
    return exec("INSERT INTO maintainance (car_id,operation_id,operation_time,operation_state,"
                "comment,person_id,person_name) VALUES (?,?,?,?,?,-1,'')",
                {carId, opId, time, state, comment})
        .lastInsertId()
        .toInt();
}

void TestDatabase::addLap(int carId, int runId, const QString &timestamp, int milliseconds) const
{
    exec("INSERT INTO laps (car_id,run_id,lap_timestamp,sum_sectors) VALUES (?,?,?,?)",
         {carId, runId, timestamp, milliseconds});
}

QStringList TestDatabase::schema()
{
    Q_INIT_RESOURCE(testschema);
    QFile file(":/test/schema.sql");
    if (!file.open(QIODevice::ReadOnly))
        qFatal("The host's schema is missing from the test's resources");
    QStringList statements;
    QString text;
    for (const QString &line : QString::fromUtf8(file.readAll()).split('\n'))
        text += line.section("--", 0, 0) + '\n';
    for (const QString &statement : text.split(';')) {
        if (!statement.trimmed().isEmpty())
            statements.append(statement.trimmed());
    }
    return statements;
}
