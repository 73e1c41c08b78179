#include "support/garagetest.h"
#include "tool.h"

#include <QDir>
#include <QFile>

namespace {

/// Three karts of two models: one due, one open, one soon, one never done, one complaint.
void fill(const TestDatabase &database)
{
    database.addCar(1, "7", "Sodi");
    database.addCar(2, "8", "Sodi");
    database.addCar(3, "7", "RX");
    database.addOperation(1, "Chain");
    database.addOperation(2, "Oil");
    database.addLimit("Sodi", 1, 0, 0, 2);
    database.addLimit("Sodi", 2, 3600, 5, 0);
    database.addLimit("RX", 1, 600, 0, 0);
    database.addRecord(1, 1, "2026-03-01T10:00:00.000Z", 1, "new chain");
    database.addRecord(1, 1, "2026-02-01T10:00:00.000Z", 1);
    database.addRecord(1, -1, "2026-03-02T10:00:00.000Z", 0, "noise");
    database.addRecord(2, 1, "2026-03-04T10:00:00.000Z", 0, "tomorrow");
    database.addRecord(3, 1, "2026-03-01T10:00:00.000Z", 1);
    for (int lap = 0; lap < 3; ++lap)
        database.addLap(1, 1, QString("2026-03-02T10:0%1:00.000Z").arg(lap), 60000);
    database.addLap(1, 1, "2026-03-01T10:00:00.000Z", 60000); // at the record's time
    database.addLap(1, 1, "2026-02-20T10:00:00.000Z", 60000);
    database.addLap(1, 2, "2026-03-02T11:00:00.000Z", 0);
    database.addLap(1, 2, "17:30", 60000);
    database.addLap(3, 3, "2026-03-05T10:00:00.000Z", 500000);
}

QStringList shown(const QJsonArray &rows, std::initializer_list<const char *> keys)
{
    QStringList lines;
    for (const QJsonValue &row : rows) {
        QStringList values;
        for (const char *key : keys)
            values.append(row.toObject().value(QLatin1String(key)).toVariant().toString());
        lines.append(values.join(' '));
    }
    return lines;
}

} // namespace

/// The commands that read rows, by the real program.
class TestToolCommands : public GarageTest
{
    Q_OBJECT
private slots:
    void argumentsDecideTheExitCode_data();
    void argumentsDecideTheExitCode();
    void dueListsEveryOperation();
    void dueFiltersAndSorts_data();
    void dueFiltersAndSorts();
    void forecastNeedsSomethingToGoBy();
    void explainDerivesTheVerdict();
    void explainSeparatesKartsWithOneNumber();
    void historyFilters_data();
    void historyFilters();
    void eachJsonOutputFollowsItsSchema();
    void aWrongOutputDoesNotFollowTheSchema();
    void peopleReadTheirLanguage();
    void noColoursWithoutATerminal();
};

void TestToolCommands::argumentsDecideTheExitCode_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("help") << QStringList {"--help"} << 0;
    QTest::newRow("help of a command") << QStringList {"due", "--help"} << 0;
    QTest::newRow("version") << QStringList {"--version"} << 0;
    QTest::newRow("nothing") << QStringList() << 1;
    QTest::newRow("unknown command") << QStringList {"wash"} << 1;
    QTest::newRow("unknown option") << QStringList {"due", "--wash"} << 1;
    QTest::newRow("wrong format") << QStringList {"due", "--format", "xml"} << 1;
    QTest::newRow("wrong day") << QStringList {"history", "--from", "soon"} << 1;
    QTest::newRow("wrong language") << QStringList {"due", "--lang", "de"} << 1;
    QTest::newRow("argument missing") << QStringList {"explain", "7"} << 1;
    QTest::newRow("unknown kart") << QStringList {"explain", "99", "Chain"} << 1;
    QTest::newRow("unknown operation") << QStringList {"explain", "8", "Wash"} << 1;
    QTest::newRow("no open complaint") << QStringList {"explain", "8", "complaint"} << 1;
    QTest::newRow("due, nothing asked") << QStringList {"due"} << 0;
    QTest::newRow("due, asked") << QStringList {"due", "--fail-if", "due"} << 4;
    QTest::newRow("due, asked of a healthy model")
        << QStringList {"due", "--fail-if", "due", "--model", "RX"} << 0;
    QTest::newRow("soon, asked") << QStringList {"due", "--fail-if", "soon", "--model", "RX"} << 4;
    QTest::newRow("soon, of a higher share")
        << QStringList {"due", "--fail-if", "soon", "--soon", "90", "--model", "RX"} << 0;
}

void TestToolCommands::argumentsDecideTheExitCode()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    fill(*createDatabase());
    const Tool::Result result = Tool::run(arguments);
    QCOMPARE(result.exitCode, exitCode);
    QCOMPARE(result.errors.isEmpty(), exitCode == 0 || exitCode == 4);
    QCOMPARE(result.output.isEmpty(), exitCode == 1);
}

void TestToolCommands::dueListsEveryOperation()
{
    fill(*createDatabase());
    const QJsonArray rows = Tool::run({"due", "--format", "json"}).rows();
    QCOMPARE(
        shown(rows,
              {"carId", "operation", "state", "seconds", "runs", "laps", "share", "meter", "localId",
               "pending"}),
        QStringList({"1 noise open 120 1 2   3 true", "1 Chain due 180 1 3 1.5 laps 1 true",
                     "1 Oil never 0 0 0 0 seconds  false", "2 Chain open 0 0 0 0 laps 4 true",
                     "2 Oil never 0 0 0 0 seconds  false", "3 Chain soon 500 1 1 0.833333 seconds 5 false"})
            .replaceInStrings("0.833333", rows.last().toObject().value("share").toVariant().toString()));
    const QJsonObject chain = rows.at(1).toObject();
    QCOMPARE(chain.value("limits"), QJsonValue(QJsonObject {{"seconds", 0}, {"runs", 0}, {"laps", 2}}));
    QCOMPARE(chain.value("left"), QJsonValue(QJsonObject {{"laps", -1}}));
    QCOMPARE(chain.value("lastDone"), QJsonValue("2026-03-01T10:00:00Z"));
    QCOMPARE(chain.value("comment"), QJsonValue("new chain"));
}

void TestToolCommands::dueFiltersAndSorts_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("rows");
    QTest::newRow("car") << QStringList {"--car", "8"} << QStringList {"2 1", "2 2"};
    QTest::newRow("two cars and a model") << QStringList {"--car", "7", "--car", "8", "--model", "Sodi"}
                                          << QStringList {"1 -1", "1 1", "1 2", "2 1", "2 2"};
    QTest::newRow("operation by name") << QStringList {"--operation", "oil"} << QStringList {"1 2", "2 2"};
    QTest::newRow("operation by id") << QStringList {"--operation", "-1"} << QStringList {"1 -1"};
    QTest::newRow("states") << QStringList {"--state", "due,soon"} << QStringList {"1 1", "3 1"};
    QTest::newRow("by share") << QStringList {"--sort", "share", "--operation", "Chain"}
                              << QStringList {"1 1", "3 1", "2 1"};
    QTest::newRow("by car") << QStringList {"--sort", "car", "--operation", "Chain"}
                            << QStringList {"3 1", "1 1", "2 1"};
    QTest::newRow("by state") << QStringList {"--sort", "state"}
                              << QStringList {"1 -1", "2 1", "1 1", "3 1", "1 2", "2 2"};
}

void TestToolCommands::dueFiltersAndSorts()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, rows);
    fill(*createDatabase());
    const Tool::Result result = Tool::run(QStringList {"due", "--format", "json"} + options);
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
    QCOMPARE(shown(result.rows(), {"carId", "operationId"}), rows);
}

void TestToolCommands::forecastNeedsSomethingToGoBy()
{
    const auto database = createDatabase();
    fill(*database);
    // Kart 2 has driven 10 laps on each of the last 20 days; the others of its model follow it, RX has
    // nothing.
    const QDate today = QDate::currentDate();
    for (int day = 1; day <= 20; ++day) {
        for (int lap = 0; lap < 10; ++lap) {
            const QDateTime time(today.addDays(-day), QTime(12, lap), Qt::LocalTime);
            database->addLap(2, 100 + day, time.toUTC().toString("yyyy-MM-ddThh:mm:ss.zzzZ"), 60000);
        }
    }
    database->exec("UPDATE service_reglament SET laps_limit = 245 WHERE model = 'Sodi' AND operation_id = 1");
    database->exec("UPDATE maintainance SET operation_state = 1");

    const QJsonArray rows = Tool::run({"forecast", "--format", "json", "--days", "20"}).rows();
    QStringList bases = shown(rows, {"carId", "operationId", "basis", "state"});
    bases.sort();
    QCOMPARE(
        bases,
        QStringList({"1 1 model ok", "1 2 model never", "2 1 kart soon", "2 2 kart never", "3 1 none soon"}));
    for (const QJsonValue &value : rows) {
        const QJsonObject row = value.toObject();
        if (row.value("basis") == "none")
            QVERIFY(row.value("expectedDate").isNull() && row.value("pace").isNull());
        if (row.value("carId") == 2 && row.value("operationId") == 1) {
            QCOMPARE(row.value("pace").toObject().value("laps").toDouble(), 10.0);
            QCOMPARE(row.value("expectedDate").toString(), today.addDays(5).toString(Qt::ISODate));
        }
    }
    const auto until = [](const QDate &day) {
        return Tool::run(
                   {"forecast", "--days", "20", "--format", "json", "--until", day.toString(Qt::ISODate)})
            .rows()
            .size();
    };
    QCOMPARE(until(today.addDays(4)), 0);
    QCOMPARE(until(today.addDays(5)), 1);
}

void TestToolCommands::explainDerivesTheVerdict()
{
    fill(*createDatabase());
    const QStringList arguments {"explain", "7", "chain", "--model", "Sodi"};
    const QString sentences = QString::fromUtf8(Tool::run(arguments).output);
    for (const char *part :
         {"The latest record is 1 of 2026-03-01 13:00", "the latest of 2 records",
          "3 laps in 1 runs count, 0.1 h (180 s), the first at 2026-03-02T10:00:00.000Z",
          "the last at 2026-03-02T10:02:00.000Z", "2 laps do not count: they were driven before the record",
          "1 laps do not count: their lap time is missing", "1 laps do not count: their time is no date",
          "Limit 2 laps: 3 laps driven, exceeded.", "Verdict: due", "cell is red",
          "listed in servicePendingList"})
        QVERIFY2(sentences.contains(part), qPrintable(QString(part) + "\n" + sentences));

    const QJsonObject json = Tool::run(arguments + QStringList {"--format", "json"}).json();
    QCOMPARE(json.value("records"), QJsonValue(2));
    QCOMPARE(shown(json.value("lapGroups").toArray(), {"verdict", "laps", "runs"}),
             QStringList({"counted 3 1", "timeUnreadable 1 1", "noLapTime 1 1", "beforeRecord 2 1"}));
    QVERIFY(QString::fromUtf8(Tool::run({"explain", "7", "complaint", "--model", "Sodi"}).output)
                .contains("Verdict: open"));
    QVERIFY(QString::fromUtf8(Tool::run({"explain", "8", "2"}).output).contains("never recorded"));
}

void TestToolCommands::explainSeparatesKartsWithOneNumber()
{
    fill(*createDatabase());
    const Tool::Result both = Tool::run({"explain", "7", "Chain"});
    QCOMPARE(both.exitCode, 1);
    QVERIFY(both.errors.contains("--model"));
    QVERIFY(Tool::run({"explain", "7", "Chain", "--model", "RX"})
                .output.contains("Verdict: not due yet, but soon"));
}

void TestToolCommands::historyFilters_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("rows");
    QTest::newRow("all, newest first") << QStringList() << QStringList {"4", "3", "1", "5", "2"};
    QTest::newRow("open") << QStringList {"--open"} << QStringList {"4", "3"};
    QTest::newRow("from") << QStringList {"--from", "2026-03-02"} << QStringList {"4", "3"};
    QTest::newRow("to") << QStringList {"--to", "2026-03-01"} << QStringList {"1", "5", "2"};
    QTest::newRow("from and to") << QStringList {"--from", "01.03.2026", "--to", "02.03.2026"}
                                 << QStringList {"3", "1", "5"};
    QTest::newRow("model") << QStringList {"--model", "RX"} << QStringList {"5"};
    QTest::newRow("operation") << QStringList {"--operation", "-1"} << QStringList {"3"};
}

void TestToolCommands::historyFilters()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, rows);
    fill(*createDatabase());
    const Tool::Result result = Tool::run(QStringList {"history", "--format", "json"} + options);
    QVERIFY2(result.exitCode == 0, qPrintable(result.errors));
    QStringList ids = shown(result.rows(), {"localId"});
    if (ids.contains("1") && ids.indexOf("5") < ids.indexOf("1") && ids.contains("5"))
        ids.swapItemsAt(ids.indexOf("5"), ids.indexOf("1")); // the same time: in any order
    QCOMPARE(ids, rows);
}

void TestToolCommands::eachJsonOutputFollowsItsSchema()
{
    fill(*createDatabase());
    QCOMPARE(Tool::schemaFaults("due", Tool::run({"due", "--format", "json"}).output), QString());
    QCOMPARE(Tool::schemaFaults("due", Tool::run({"due", "--car", "99", "--format", "json"}).output),
             QString());
    QCOMPARE(Tool::schemaFaults("forecast", Tool::run({"forecast", "--format", "json"}).output), QString());
    QCOMPARE(Tool::schemaFaults("history", Tool::run({"history", "--format", "json"}).output), QString());
    for (const char *operation : {"1", "2", "complaint"}) {
        const QStringList arguments {"explain", "7", operation, "--model", "Sodi", "--format", "json"};
        QCOMPARE(Tool::schemaFaults("explain", Tool::run(arguments).output), QString());
    }
}

void TestToolCommands::aWrongOutputDoesNotFollowTheSchema()
{
    for (const char *name : {"due", "forecast", "history"})
        QVERIFY(!Tool::schemaFaults(name, R"({"rows":[{"carId":1}]})").isEmpty());
    QVERIFY(!Tool::schemaFaults("explain", "{}").isEmpty());
}

void TestToolCommands::peopleReadTheirLanguage()
{
    fill(*createDatabase());
    QVERIFY(Tool::run({"due"}).output.contains("Rows: 6."));
    QVERIFY(Tool::run({"due", "--lang", "ru"}).output.contains("Строк: 6."));
    QVERIFY(Tool::run({"--lang=ru", "due"}).output.contains("Строк: 6."));
    QVERIFY(Tool::run({"due"}, {{"LC_ALL", "ru_RU.UTF-8"}}).output.contains("Строк: 6."));
    QVERIFY(Tool::run({"due"}, {{"LC_ALL", "C"}}).output.contains("Rows: 6."));
    QVERIFY(Tool::run({"due", "--help", "--lang", "ru"}).output.contains("Ключи:"));
    // Without a UTF-8 locale, as under cron.
    const QString folder = home().path() + "/гараж";
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(QFile::copy(home().databasePath(), folder + "/база.sqlite"));
    const QStringList arguments {"due", "--database", folder + "/база.sqlite", "--lang", "ru"};
    QVERIFY(Tool::run(arguments, {{"LC_ALL", "C"}}).output.contains("Строк: 6."));
}

void TestToolCommands::noColoursWithoutATerminal()
{
    fill(*createDatabase());
    QVERIFY(!Tool::run({"due"}, {{"TERM", "xterm"}}).output.contains('\033'));
}

GARAGE_TEST_WITHOUT_WINDOWS(TestToolCommands)
#include "tst_toolcommands.moc"
