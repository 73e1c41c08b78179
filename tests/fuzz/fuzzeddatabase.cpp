#include "fuzzeddatabase.h"

#include <QDir>
#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace {

const char *const tables[] = {"cars",        "personal", "laps", "service_operations", "service_reglament",
                              "maintainance"};

const char *const content[] = {
    "INSERT INTO cars VALUES (1,'1','Sodi'),(2,'12B','Sodi'),(3,'7','RX'),(4,NULL,'')",
    "INSERT INTO personal VALUES (1,'Иванов','Иван','Иванович')",
    "INSERT INTO service_operations VALUES (1,'Масло'),(2,'Цепь'),(3,''),(5,'Шины 100% %s')",
    "INSERT INTO service_reglament VALUES ('Sodi',1,3600,0,0),('Sodi',2,0,2,1),('RX',1,60,0,0)",
    "INSERT INTO laps VALUES (1,1,1,'2026-03-09T10:00:00.000Z',3700000),"
    "(2,1,2,'2026-03-09T10:05:00.000Z',30000),(3,3,2,'2026-03-09T10:05:00.000Z',30000)",
    "INSERT INTO maintainance VALUES (1,1,1,'2026-03-08T10:00:00.000Z',1,'','',1,NULL),"
    "(2,1,-1,'2026-03-08T11:00:00.000Z',-1,'','Тормоза',0,NULL),"
    "(3,2,2,'2026-03-08T11:00:00.000Z',-1,'','',1,5),"
    "(4,3,1,'',NULL,NULL,NULL,NULL,NULL),(5,99,77,'never',0,'','',2,6)",
};

/// What other programs do to the file, with %1 for any text between quotes and %2 for any number.
const char *const changes[] = {
    "INSERT OR REPLACE INTO cars VALUES (%2,'%1','%1')",
    "DELETE FROM cars WHERE id=%2",
    "INSERT OR REPLACE INTO service_operations VALUES (%2,'%1')",
    "DELETE FROM service_operations WHERE id=%2",
    "INSERT OR REPLACE INTO service_reglament VALUES ('%1',%2,'%1',%2,-1)",
    "UPDATE maintainance SET operation_time='%1' WHERE id=%2",
    "UPDATE maintainance SET operation_id=%2,operation_state='%1'",
    "UPDATE maintainance SET car_id=%2,comment=x'00ff00'",
    "INSERT INTO maintainance (car_id,operation_id,operation_state) VALUES (%2,%2,%2)",
    "INSERT INTO laps (car_id,run_id,lap_timestamp,sum_sectors) VALUES (%2,%2,'%1',9223372036854775807)",
    "DELETE FROM maintainance",
};

} // namespace

FuzzedDatabase::FuzzedDatabase()
{
    if (!m_home.isValid())
        qFatal("No scratch home: %s", qPrintable(m_home.errorString()));
    qputenv("HOME", QFile::encodeName(m_home.path()));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_home.path() + QLatin1String("/.config")));
    QDir().mkpath(m_home.path() + QLatin1String("/Documents/Ruvalo-QT/DB"));

    m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("fuzzer"));
    m_database.setDatabaseName(m_home.path() + QLatin1String("/Documents/Ruvalo-QT/DB/ruvalo.sqlite"));
    m_database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
    if (!m_database.open())
        qFatal("%s", qPrintable(m_database.lastError().text()));
    exec(QStringLiteral("PRAGMA synchronous=OFF"));

    QFile schema(QStringLiteral(":/test/schema.sql"));
    if (!schema.open(QIODevice::ReadOnly))
        qFatal("The host's schema is missing");
    QString text;
    for (const QString &line : QString::fromUtf8(schema.readAll()).split(QLatin1Char('\n')))
        text += line.section(QLatin1String("--"), 0, 0) + QLatin1Char(' ');
    for (const QString &statement : text.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        if (!statement.trimmed().isEmpty())
            exec(statement);
    }
    m_changed = true;
    restore();
}

bool FuzzedDatabase::restore()
{
    if (!m_changed && version() == m_restoredVersion)
        return false;
    exec(QStringLiteral("BEGIN IMMEDIATE"));
    for (const char *table : tables)
        exec(QStringLiteral("DELETE FROM %1").arg(QLatin1String(table)));
    exec(QStringLiteral("DELETE FROM sqlite_sequence"));
    for (const char *statement : content)
        exec(QString::fromUtf8(statement));
    exec(QStringLiteral("COMMIT"));
    m_restoredVersion = version();
    m_changed = false;
    return true;
}

void FuzzedDatabase::change(ByteReader &bytes)
{
    static const char *const numbers[] = {"0",  "1",    "2",          "3",          "-1",
                                          "99", "NULL", "2147483648", "4294967297", "-9223372036854775808"};
    QString statement = QLatin1String(changes[bytes.below(int(std::size(changes)))]);
    const QString number = QLatin1String(numbers[bytes.below(int(std::size(numbers)))]);
    QString text = QString::fromUtf8(bytes.text());
    text.replace(QLatin1Char('\''), QLatin1String("''")).remove(QChar::Null);
    // Constraints may refuse it.
    statement.replace(QLatin1String("%2"), number).replace(QLatin1String("%1"), text);
    QSqlQuery(m_database).exec(statement);
    m_changed = true;
}

void FuzzedDatabase::check()
{
    exec(QStringLiteral("BEGIN IMMEDIATE"));
    exec(QStringLiteral("ROLLBACK"));
}

void FuzzedDatabase::exec(const QString &statement)
{
    QSqlQuery query(m_database);
    if (!query.exec(statement))
        qFatal("%s: %s", qPrintable(statement), qPrintable(query.lastError().text()));
}

int FuzzedDatabase::version()
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    return query.exec(QStringLiteral("PRAGMA data_version")) && query.next() ? query.value(0).toInt() : -1;
}
