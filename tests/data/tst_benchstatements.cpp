#include "support/garagetest.h"

#include "data/garagestatistics.h"
#include "data/servicerecordstore.h"

#include <QFile>
#include <QSqlDriver>
#include <QtTest>

#include <sqlite3.h>

namespace {

/// One form for statements that are broken into lines differently.
QString normalized(const QString &statement)
{
    return statement.simplified().replace(", ", ",");
}

/// The statements of a connection as it runs them, with their placeholders.
class StatementTrace final
{
public:
    explicit StatementTrace(const QString &connectionName)
    {
        const QVariant handle = QSqlDatabase::database(connectionName, false).driver()->handle();
        m_database = *static_cast<sqlite3 *const *>(handle.constData());
        sqlite3_trace_v2(m_database, SQLITE_TRACE_STMT, append, &m_statements);
    }
    ~StatementTrace() { sqlite3_trace_v2(m_database, 0, nullptr, nullptr); }

    const QStringList &statements() const { return m_statements; }

private:
    static int append(unsigned, void *context, void *statement, void *)
    {
        const char *text = sqlite3_sql(static_cast<sqlite3_stmt *>(statement));
        static_cast<QStringList *>(context)->append(normalized(QString::fromUtf8(text)));
        return 0;
    }

    sqlite3 *m_database = nullptr;
    QStringList m_statements;
};

/// The statements of a file of bench/, one element each.
QStringList benchStatements(const QString &fileName)
{
    QFile file(QString(BENCH_FOLDER "/") + fileName);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Cannot read %s", qPrintable(file.fileName()));
    QStringList statements;
    for (const QString &statement : QString::fromUtf8(file.readAll()).split(';')) {
        if (!statement.simplified().isEmpty())
            statements.append(normalized(statement));
    }
    return statements;
}

const QString connectionName = "benchStatements";

} // namespace

/// The benchmarks' peers run the module's own statements.
class TestBenchStatements final : public GarageTest
{
    Q_OBJECT

private slots:
    void init();
    void theStatementsOfAReloadAreTheModules();
    void theStatementsOfARemoteBatchAreTheModules();
};

void TestBenchStatements::init()
{
    GarageTest::init();
    createDatabase();
}

void TestBenchStatements::theStatementsOfAReloadAreTheModules()
{
    const GarageDatabase database(connectionName);
    const StatementTrace trace(connectionName);
    QList<MaintainanceItem> cars = GarageStatistics::readCars(database);
    GarageStatistics::readDrivingSinceService(database, cars);
    QVERIFY(GarageStatistics::readServiceLog(database).isEmpty());
    QVERIFY(GarageStatistics::readReglament(database).isEmpty());
    QVERIFY(GarageStatistics::readOperations(database).isEmpty());
    QCOMPARE(benchStatements("statements.sql"), trace.statements());
}

void TestBenchStatements::theStatementsOfARemoteBatchAreTheModules()
{
    GarageDatabase database(connectionName);
    const StatementTrace trace(connectionName);
    ServiceRecordStore::storeRemote(database, {RemoteServiceRecord()});
    QStringList statements = trace.statements();
    QCOMPARE(statements.takeFirst(), "BEGIN IMMEDIATE");
    QCOMPARE(statements.takeLast(), "COMMIT");
    QCOMPARE(benchStatements("remotestatements.sql"), statements);
}

GARAGE_TEST_WITHOUT_WINDOWS(TestBenchStatements)
#include "tst_benchstatements.moc"
