#include "support/garagetest.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace {

struct HostRun
{
    int exitCode = -1;
    QString output;
    QString complaints;

    QVector<QJsonObject> messages() const
    {
        QVector<QJsonObject> messages;
        for (const QString &line : output.split('\n', Qt::SkipEmptyParts))
            messages.append(QJsonDocument::fromJson(line.toUtf8()).object());
        return messages;
    }

    /// Data of the messages that the plug-in echoed, by the event that it was told.
    QVector<QJsonObject> echoesOf(const QString &event) const
    {
        QVector<QJsonObject> found;
        for (const QJsonObject &message : messages()) {
            const QJsonObject echo = message.value("data").toObject();
            if (message.value("event").toString() == "echo" && echo.value("event").toString() == event)
                found.append(echo.value("data").toObject());
        }
        return found;
    }

    QStringList events() const
    {
        QStringList events;
        for (const QJsonObject &message : messages())
            events.append(message.value("event").toString());
        return events;
    }
};

const QString fakePlugin = FAKE_PLUGIN;

} // namespace

/// The demo host as a script sees it: arguments in, lines and an exit code out.
class TestGarageHost final : public GarageTest
{
    Q_OBJECT

private slots:
    void helpExplainsEachOption();
    void wrongArgumentsAreNamed_data();
    void wrongArgumentsAreNamed();
    void aPluginThatDoesNotLoadIsNamed_data();
    void aPluginThatDoesNotLoadIsNamed();
    void aHomeThatCannotBeMadeIsNamed();
    void theStartSequenceComesInOrder();
    void eachLineReachesThePluginAndEachEventComesBack();
    void badLinesAreNamedAndTheOthersHandedOver();
    void theLastReloadIsWaitedFor();
    void availabilityRequestsAreCarriedOutAndAnnounced();
    void withoutAnythingDueTheTableSaysSo();
    void aFileOfEventsIsPlayedAndPhotographed();
    void aPictureThatCannotBeWrittenIsNamed();
    void aPlayFileWithABadLineIsNamed();
    void withoutADisplayTheWindowIsPhotographed();
    void pictureSizeAndPaletteAreChosen();
    void theDatabaseLiesInTheHomeAndIsKept();
    void aFileWithoutItsCarsIsKept();
    void freshStartsOver();
    void aNewFileHasAWriteAheadLogAndAnOldOneKeepsItsJournal();
    void dataThatAreNotAppliedAreNamed();
    void documentsAreOnlyTouchedWhenAskedFor();
    void theTourWritesNothingIntoRealDocuments();

private:
    HostRun runHost(const QStringList &arguments, const QByteArray &input = {});
    HostRun runStdio(const QByteArray &input, const QStringList &more = {});
    /// A file of that text in the test's home.
    QString writeFile(const QByteArray &text);
    QString hostHome() { return home().path() + "/host"; }
    QString hostDatabase() { return hostHome() + "/Documents/Ruvalo-QT/DB/ruvalo.sqlite"; }
};

HostRun TestGarageHost::runHost(const QStringList &arguments, const QByteArray &input)
{
    QProcess process;
    process.start(GARAGE_HOST, QStringList {QStringLiteral("--lang"), QStringLiteral("en")} + arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(60000))
        return {};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

HostRun TestGarageHost::runStdio(const QByteArray &input, const QStringList &more)
{
    return runHost(QStringList {"--stdio", "--plugin", fakePlugin, "--home", hostHome()} + more, input);
}

QString TestGarageHost::writeFile(const QByteArray &text)
{
    QFile file(home().path() + "/play.jsonl");
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("Cannot write %s", qPrintable(file.fileName()));
    return file.fileName();
}

void TestGarageHost::helpExplainsEachOption()
{
    const HostRun run = runHost({"--help"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.complaints, QString());
    for (const char *option : {"--stdio", "--due", "--plugin", "--home", "--documents", "--data", "--seed",
                               "--fresh", "--play", "--screenshots", "--window-size", "--dark", "--validate",
                               "--json", "--check", "--time-limit", "--lang", "--verbose"})
        QVERIFY2(run.output.contains(option), option);
    QVERIFY(run.output.contains("Exit codes"));
    QVERIFY(!QFileInfo::exists(hostHome()));
}

void TestGarageHost::wrongArgumentsAreNamed_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("word");
    QTest::newRow("unknown option") << QStringList {"--loud"} << "loud";
    QTest::newRow("surplus word") << QStringList {"kart"} << "kart";
    QTest::newRow("unknown data") << QStringList {"--data", "huge"} << "huge";
    QTest::newRow("seed is no number") << QStringList {"--seed", "x"} << "--seed";
    QTest::newRow("documents started over") << QStringList {"--documents", "--fresh"} << "--fresh";
    for (const char *size : {"900", "0x600", "900x600x2", "wide"})
        QTest::newRow(size) << QStringList {"--screenshots", "x", "--window-size", size} << "--window-size";
    QTest::newRow("unknown check lists the known ones")
        << QStringList {"--validate", fakePlugin, "--check", "nonsense"} << "event-lists, ";
    QTest::newRow("empty value") << QStringList {"--validate", QString()} << "--validate";
}

void TestGarageHost::wrongArgumentsAreNamed()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QString, word);
    const HostRun run = runHost(arguments);
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.output, QString());
    QVERIFY2(run.complaints.contains(word), qPrintable(run.complaints));
}

void TestGarageHost::aPluginThatDoesNotLoadIsNamed_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("no such file") << "/nowhere/libmissing.so";
    QTest::newRow("not a library") << "/etc/passwd";
    QTest::newRow("a library without a plug-in") << GARAGE_HOST;
}

void TestGarageHost::aPluginThatDoesNotLoadIsNamed()
{
    QFETCH(const QString, file);
    const HostRun run = runHost({"--stdio", "--plugin", file, "--home", hostHome()});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.output, QString());
    QVERIFY2(run.complaints.contains("plug-in not loaded"), qPrintable(run.complaints));
    QVERIFY2(run.complaints.contains(QFileInfo(file).fileName()), qPrintable(run.complaints));
}

void TestGarageHost::aHomeThatCannotBeMadeIsNamed()
{
    const HostRun run = runHost({"--stdio", "--plugin", fakePlugin, "--home", "/proc/nowhere"});
    QCOMPARE(run.exitCode, 3);
    QVERIFY2(run.complaints.contains("/proc/nowhere"), qPrintable(run.complaints));
}

void TestGarageHost::theStartSequenceComesInOrder()
{
    const HostRun run = runStdio({});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.complaints, QString());
    QStringList told;
    for (const QJsonObject &message : run.messages())
        told.append(message.value("data").toObject().value("event").toString());
    QCOMPARE(told.mid(0, 4),
             (QStringList {"load_complete", "personal_list", "cars_list_changed", "run_saved_to_db"}));

    const QJsonArray cars = run.echoesOf("cars_list_changed").first().value("cars").toArray();
    QCOMPARE(cars.size(), 24);
    for (const char *key : {"id", "num", "name", "car_guid", "available_for_runs"})
        QVERIFY2(cars.first().toObject().contains(key), key);
    const QJsonArray people = run.echoesOf("personal_list").first().value("personalList").toArray();
    QCOMPARE(people.size(), 10);
    for (const char *key : {"id", "lastName", "firstName", "midName", "serviceCode"})
        QVERIFY2(people.first().toObject().contains(key), key);
}

void TestGarageHost::eachLineReachesThePluginAndEachEventComesBack()
{
    const HostRun run = runStdio("{\"module\":\"office\",\"event\":\"car_complain\",\"data\":{\"carId\":7}}\n"
                                 "\n"
                                 "{\"event\":\"run_closed\"}");
    QCOMPARE(run.exitCode, 0);
    const QVector<QJsonObject> complaints = run.echoesOf("car_complain");
    QCOMPARE(complaints.size(), 1);
    QCOMPARE(complaints.first().value("carId").toInt(), 7);
    QCOMPARE(run.echoesOf("run_closed").size(), 1);
    QVERIFY(run.output.contains("\"module\":\"office\""));
    for (const QJsonObject &message : run.messages())
        QCOMPARE(message.keys(), (QStringList {"data", "event", "module"}));
}

void TestGarageHost::badLinesAreNamedAndTheOthersHandedOver()
{
    const HostRun run = runStdio("\ngarbage\n[1]\n  \n{\"data\":{}}\n{\"event\":\"run_closed\"}\n");
    QCOMPARE(run.exitCode, 5);
    QCOMPARE(run.complaints.count("line "), 3);
    for (const char *line : {"line 2 ", "line 3 ", "line 5 "})
        QVERIFY2(run.complaints.contains(line), qPrintable(run.complaints));
    QCOMPARE(run.echoesOf("run_closed").size(), 1);
}

void TestGarageHost::theLastReloadIsWaitedFor()
{
    const HostRun run = runStdio("{\"event\":\"run_closed\"}\n");
    QCOMPARE(run.events().last(), "update_pending_service");
}

void TestGarageHost::availabilityRequestsAreCarriedOutAndAnnounced()
{
    const HostRun run =
        runStdio("{\"event\":\"say\",\"data\":{\"event\":\"update_cars\",\"data\":"
                 "{\"command\":\"set_availability\",\"carsIdsList\":[101,102],\"available\":0}}}\n");
    QCOMPARE(run.exitCode, 0);
    const QVector<QJsonObject> lists = run.echoesOf("cars_list_changed");
    QCOMPARE(lists.size(), 2);
    QCOMPARE(lists.last().value("noStatsUpdate").toBool(), true);
    int unavailable = 0;
    for (const QJsonValue &car : lists.last().value("cars").toArray()) {
        const int id = car.toObject().value("id").toInt();
        const bool available = car.toObject().value("available_for_runs").toBool();
        unavailable += (id == 101 || id == 102) && !available ? 1 : 0;
    }
    QCOMPARE(unavailable, 2);
}

void TestGarageHost::withoutAnythingDueTheTableSaysSo()
{
    const HostRun run = runHost({"--due", "--plugin", fakePlugin, "--home", hostHome()});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.output.contains("No service is due"), qPrintable(run.output));
}

void TestGarageHost::aFileOfEventsIsPlayedAndPhotographed()
{
    const QString file =
        writeFile("{\"event\":\"clicked\"}\n{\"screenshot\":\"garage\"}\n{\"event\":\"run_saved_to_db\"}\n");
    const QString pictures = home().path() + "/pictures";
    const HostRun run =
        runHost({"--play", file, "--plugin", fakePlugin, "--home", hostHome(), "--screenshots", pictures});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.events().contains("insert_tab"));
    QCOMPARE(run.events().last(), "update_pending_service");
    QVERIFY(!QImage(pictures + "/garage.png").isNull());
}

void TestGarageHost::aPictureThatCannotBeWrittenIsNamed()
{
    const QString noFolder = writeFile("{\"screenshot\":\"garage\"}\n");
    const QStringList arguments = {"--screenshots", noFolder, "--plugin", fakePlugin, "--home", hostHome()};
    for (const QStringList &way : {QStringList(), QStringList {"--play", noFolder}}) {
        const HostRun run = runHost(arguments + way);
        QCOMPARE(run.exitCode, 8);
        QVERIFY2(run.complaints.contains(noFolder), qPrintable(run.complaints));
    }
}

void TestGarageHost::aPlayFileWithABadLineIsNamed()
{
    const HostRun run = runHost({"--play", writeFile("hello"), "--plugin", fakePlugin, "--home", hostHome()});
    QCOMPARE(run.exitCode, 5);
    QVERIFY2(run.complaints.contains("line 1"), qPrintable(run.complaints));
}

void TestGarageHost::withoutADisplayTheWindowIsPhotographed()
{
    const HostRun run = runHost({"--plugin", fakePlugin, "--home", hostHome()});
    QCOMPARE(run.exitCode, 0);
    const QStringList pictures = QDir(hostHome() + "/screenshots").entryList({"*.png"});
    QVERIFY(pictures.size() >= 6);
    const QStringList lines = run.output.trimmed().split(QLatin1Char('\n'));
    QVERIFY2(lines.first().contains(QLatin1String("seconds")), qPrintable(run.output));
    QVERIFY2(run.output.contains(QLatin1String("No service is due")), qPrintable(run.output));
    QCOMPARE(lines.last(), QLatin1String("Screenshots: ") + hostHome() + QLatin1String("/screenshots"));
    QCOMPARE(run.complaints, QString());
}

void TestGarageHost::pictureSizeAndPaletteAreChosen()
{
    const QString pictures = home().path() + "/pictures";
    const HostRun run = runHost({"--screenshots", pictures, "--window-size", "1100x700", "--dark", "--plugin",
                                 fakePlugin, "--home", hostHome()});
    QCOMPARE(run.exitCode, 0);
    const QImage window(pictures + "/01-garage.png");
    QCOMPARE(window.size(), QSize(1100, 700));
    QVERIFY(window.pixelColor(1090, 10).lightness() < 100); // the empty end of the tool bar
}

void TestGarageHost::theDatabaseLiesInTheHomeAndIsKept()
{
    QCOMPARE(runStdio({}).exitCode, 0);
    {
        const TestDatabase database(hostDatabase(), false);
        QCOMPARE(database.value("SELECT count(*) FROM cars").toInt(), 24);
        database.exec("DELETE FROM cars WHERE id>105");
    }
    QCOMPARE(runStdio({}).exitCode, 0);
    const TestDatabase database(hostDatabase(), false);
    QCOMPARE(database.value("SELECT count(*) FROM cars").toInt(), 5);
}

void TestGarageHost::aFileWithoutItsCarsIsKept()
{
    QCOMPARE(runStdio({}).exitCode, 0);
    {
        const TestDatabase database(hostDatabase(), false);
        database.exec("DELETE FROM cars");
    }
    QCOMPARE(runStdio({}).exitCode, 0);
    const TestDatabase database(hostDatabase(), false);
    QCOMPARE(database.value("SELECT count(*) FROM cars").toInt(), 0);
    QVERIFY(database.value("SELECT count(*) FROM laps").toInt() > 0);
}

void TestGarageHost::freshStartsOver()
{
    QCOMPARE(runStdio({}, {"--data", "empty"}).exitCode, 0);
    QCOMPARE(runStdio({}, {"--fresh"}).exitCode, 0);
    const TestDatabase database(hostDatabase(), false);
    QCOMPARE(database.value("SELECT count(*) FROM cars").toInt(), 24);
}

void TestGarageHost::aNewFileHasAWriteAheadLogAndAnOldOneKeepsItsJournal()
{
    QCOMPARE(runStdio({}, {"--data", "empty"}).exitCode, 0);
    QCOMPARE(TestDatabase(hostDatabase(), false).value("PRAGMA journal_mode").toString(), "wal");
    const std::unique_ptr<TestDatabase> documents = createDatabase();
    QCOMPARE(runHost({"--stdio", "--plugin", fakePlugin, "--documents"}).exitCode, 0);
    QCOMPARE(documents->value("PRAGMA journal_mode").toString(), "delete");
}

void TestGarageHost::dataThatAreNotAppliedAreNamed()
{
    QCOMPARE(runStdio({}, {"--data", "sample"}).complaints, QString());
    const HostRun again = runStdio({}, {"--data", "season"});
    QCOMPARE(again.exitCode, 0);
    QVERIFY2(again.complaints.contains("--data was not applied"), qPrintable(again.complaints));
    QVERIFY2(again.complaints.contains(hostDatabase()), qPrintable(again.complaints));
    const HostRun documents = runHost({"--stdio", "--plugin", fakePlugin, "--documents", "--data", "sample"});
    QVERIFY2(documents.complaints.contains("--data was not applied"), qPrintable(documents.complaints));
}

void TestGarageHost::documentsAreOnlyTouchedWhenAskedFor()
{
    QCOMPARE(runStdio({}).exitCode, 0);
    QVERIFY(!QFileInfo::exists(home().databasePath()));

    const HostRun run = runHost({"--stdio", "--plugin", fakePlugin, "--documents"});
    QCOMPARE(run.exitCode, 0);
    const TestDatabase database(home().databasePath(), false);
    QCOMPARE(database.value("SELECT count(*) FROM cars").toInt(), 0);
}

void TestGarageHost::theTourWritesNothingIntoRealDocuments()
{
    const std::unique_ptr<TestDatabase> database = createDatabase();
    for (int car = 1; car <= 5; ++car)
        database->addCar(car, QString::number(car), "Вихрь");
    const QString pictures = home().path() + "/pictures";
    const HostRun run = runHost({"--documents", "--plugin", fakePlugin, "--screenshots", pictures});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(database->value("SELECT count(*) FROM laps").toInt(), 0);
    QCOMPARE(database->value("SELECT count(*) FROM cars").toInt(), 5);
}

GARAGE_TEST_WITHOUT_WINDOWS(TestGarageHost)
#include "tst_garagehost.moc"
