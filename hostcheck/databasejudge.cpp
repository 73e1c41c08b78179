#include "hostcheck/databasejudge.h"

#include "hostcheck/findings.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QVariant>

namespace {

const QLatin1String connectionName("hostcheckReader");

QString databasePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
        + QLatin1String("/Ruvalo-QT/DB/ruvalo.sqlite");
}

/// A database connection that is removed at the end of the scope.
class Connection final
{
    Q_DISABLE_COPY(Connection)
public:
    Connection(const QString &name, const QString &path, const QString &options)
        : m_name(name), m_database(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name))
    {
        m_database.setDatabaseName(path);
        m_database.setConnectOptions(options);
        m_isOpen = m_database.open();
    }
    ~Connection()
    {
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }

    bool isOpen() const { return m_isOpen; }
    QSqlDatabase &database() { return m_database; }

private:
    const QString m_name;
    QSqlDatabase m_database;
    bool m_isOpen = false;
};

/// First column of all rows.
QStringList texts(QSqlDatabase &database, const QString &statement)
{
    QStringList result;
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(statement))
        return result;
    while (query.next())
        result.append(query.value(0).toString());
    return result;
}

QStringList columns(QSqlDatabase &database, const QString &table)
{
    return texts(database, QStringLiteral("SELECT name FROM pragma_table_info('%1')").arg(table));
}

QMap<QString, QStringList> readExpectedTables()
{
    QFile file(QStringLiteral(":/hostcheck/schema.sql"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString schema =
        QString::fromUtf8(file.readAll()).remove(QRegularExpression(QStringLiteral("--[^\n]*")));
    Connection scratch(QStringLiteral("hostcheckSchema"), QStringLiteral(":memory:"), QString());
    for (const QString &statement : schema.split(QLatin1Char(';')))
        QSqlQuery(scratch.database()).exec(statement);
    QMap<QString, QStringList> tables;
    for (const QString &table :
         texts(scratch.database(),
               QStringLiteral(
                   "SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite_%'")))
        tables.insert(table, columns(scratch.database(), table));
    return tables;
}

/// The tables of schema.sql with their columns.
const QMap<QString, QStringList> &expectedTables()
{
    static const QMap<QString, QStringList> tables = readExpectedTables();
    return tables;
}

/// The columns of each unique key of the table, in the order of their names, joined by a comma.
QStringList uniqueKeys(QSqlDatabase &database, const QString &table)
{
    return texts(
        database,
        QStringLiteral("SELECT (SELECT group_concat(name) FROM (SELECT name FROM pragma_index_info(l.name) "
                       "ORDER BY name)) FROM pragma_index_list('%1') l WHERE l.\"unique\" AND NOT l.partial")
            .arg(table));
}

} // namespace

void DatabaseJudge::judgeLoading()
{
    if (!QFile::exists(databasePath()))
        m_findings.report(QLatin1String("database-missing"),
                          QStringLiteral("The plug-in was loaded before %1 existed.").arg(databasePath()));
    judgeContents();
}

void DatabaseJudge::judgeContents()
{
    judgeConnectionNames();
    if (!QFile::exists(databasePath()))
        return;
    Connection connection(connectionName, databasePath(), QStringLiteral("QSQLITE_OPEN_READONLY"));
    QSqlDatabase &database = connection.database();
    QSqlQuery probe(database);
    if (!connection.isOpen() || !probe.exec(QStringLiteral("SELECT count(*) FROM sqlite_master")))
        return;
    probe.finish();
    judgeTables(database);
    judgeKeys(database);
    judgeJournal(database);
    judgeIndex(database);
    judgeLapTimes(database);
}

void DatabaseJudge::judgeConnectionNames()
{
    for (const QString &name : {QStringLiteral("maintainanceDbReader"), QStringLiteral("garageSettingsDb"),
                                QStringLiteral("garageStatsLoader")}) {
        if (QSqlDatabase::contains(name))
            m_findings.report(QLatin1String("database-connection-name"),
                              QStringLiteral("The host has a database connection named %1.").arg(name));
    }
}

void DatabaseJudge::judgeTables(QSqlDatabase &database)
{
    const QMap<QString, QStringList> &expected = expectedTables();
    for (auto table = expected.constBegin(); table != expected.constEnd(); ++table) {
        const QStringList actual = columns(database, table.key());
        if (actual.isEmpty()) {
            m_findings.report(QLatin1String("database-tables"),
                              QStringLiteral("The table %1 is missing.").arg(table.key()));
            continue;
        }
        for (const QString &column : table.value()) {
            if (!actual.contains(column, Qt::CaseInsensitive))
                m_findings.report(QLatin1String("database-tables"),
                                  QStringLiteral("The column %1.%2 is missing.").arg(table.key(), column));
        }
    }
}

void DatabaseJudge::judgeKeys(QSqlDatabase &database)
{
    for (const QString &table : {QStringLiteral("maintainance"), QStringLiteral("service_operations")}) {
        const QStringList sql =
            texts(database, QStringLiteral("SELECT sql FROM sqlite_master WHERE name='%1'").arg(table));
        if (!sql.isEmpty() && !sql.constFirst().contains(QLatin1String("AUTOINCREMENT"), Qt::CaseInsensitive))
            m_findings.report(QLatin1String("database-keys"),
                              QStringLiteral("The id of the table %1 is not AUTOINCREMENT.").arg(table));
    }
    if (!columns(database, QStringLiteral("service_reglament")).isEmpty()
        && !uniqueKeys(database, QStringLiteral("service_reglament"))
                .contains(QStringLiteral("model,operation_id")))
        m_findings.report(QLatin1String("database-keys"),
                          QStringLiteral("(model, operation_id) of service_reglament is not unique."));
    const QStringList stateDefault =
        texts(database,
              QStringLiteral("SELECT ifnull(dflt_value,'NULL') FROM pragma_table_info('maintainance') WHERE "
                             "name='operation_state'"));
    if (!stateDefault.isEmpty() && stateDefault.constFirst() != QLatin1String("1"))
        m_findings.report(QLatin1String("database-keys"),
                          QStringLiteral("maintainance.operation_state defaults to %1 instead of 1.")
                              .arg(stateDefault.constFirst()));
}

void DatabaseJudge::judgeJournal(QSqlDatabase &database)
{
    const QStringList mode = texts(database, QStringLiteral("PRAGMA journal_mode"));
    if (!mode.isEmpty() && mode.constFirst() != QLatin1String("wal"))
        m_findings.report(QLatin1String("database-journal"),
                          QStringLiteral("The journal mode is %1 instead of wal.").arg(mode.constFirst()));
}

void DatabaseJudge::judgeIndex(QSqlDatabase &database)
{
    if (columns(database, QStringLiteral("laps")).isEmpty())
        return;
    const QStringList indexes = texts(
        database,
        QStringLiteral("SELECT (SELECT group_concat(name) FROM (SELECT name FROM pragma_index_info(l.name) "
                       "ORDER BY seqno)) FROM pragma_index_list('laps') l WHERE NOT l.partial"));
    for (const QString &index : indexes) {
        if (index.startsWith(QLatin1String("car_id,lap_timestamp"), Qt::CaseInsensitive))
            return;
    }
    m_findings.report(QLatin1String("database-index"),
                      QStringLiteral("The table laps has no index on (car_id, lap_timestamp)."));
}

void DatabaseJudge::judgeLapTimes(QSqlDatabase &database)
{
    // Only the newest laps: reading all of a season would take seconds.
    const QStringList wrong = texts(
        database,
        QStringLiteral("SELECT ifnull(lap_timestamp,'NULL') FROM (SELECT lap_timestamp FROM laps ORDER BY "
                       "rowid DESC LIMIT 1000) WHERE lap_timestamp IS NULL OR typeof(lap_timestamp)<>'text' "
                       "OR lap_timestamp NOT GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]T[0-9][0-9]:"
                       "[0-9][0-9]:[0-9][0-9].[0-9][0-9][0-9]Z' LIMIT 1"));
    if (!wrong.isEmpty() && !m_hasReportedLapTimes)
        m_findings.report(QLatin1String("database-lap-times"),
                          QStringLiteral("A lap has the time %1, which is not a text like "
                                         "2026-03-01T10:00:00.000Z.")
                              .arg(wrong.constFirst()));
    m_hasReportedLapTimes = m_hasReportedLapTimes || !wrong.isEmpty();
}
