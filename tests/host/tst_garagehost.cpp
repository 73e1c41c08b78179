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
        for (const QString &line : output.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            messages.append(QJsonDocument::fromJson(line.toUtf8()).object());
        return messages;
    }

    /// Data of the messages that the plug-in echoed, by the event that it was told.
    QVector<QJsonObject> echoesOf(const QString &event) const
    {
        QVector<QJsonObject> found;
        for (const QJsonObject &message : messages()) {
            const QJsonObject echo = message.value(QLatin1String("data")).toObject();
            if (message.value(QLatin1String("event")).toString() == QLatin1String("echo")
                && echo.value(QLatin1String("event")).toString() == event)
                found.append(echo.value(QLatin1String("data")).toObject());
        }
        return found;
    }

    QStringList events() const
    {
        QStringList events;
        for (const QJsonObject &message : messages())
            events.append(message.value(QLatin1String("event")).toString());
        return events;
    }
};

const QString fakePlugin = QStringLiteral(FAKE_PLUGIN);

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
    void theDatabaseLiesInTheHomeAndIsKept();
    void aFileWithoutItsCarsIsKept();
    void freshStartsOver();
    void documentsAreOnlyTouchedWhenAskedFor();
    void theTourWritesNothingIntoRealDocuments();

private:
    HostRun runHost(const QStringList &arguments, const QByteArray &input = {});
    HostRun runStdio(const QByteArray &input, const QStringList &more = {});
    /// A file of that text in the test's home.
    QString writeFile(const QByteArray &text);
    QString hostHome() { return home().path() + QLatin1String("/host"); }
    QString hostDatabase() { return hostHome() + QLatin1String("/Documents/Ruvalo-QT/DB/ruvalo.sqlite"); }
};

HostRun TestGarageHost::runHost(const QStringList &arguments, const QByteArray &input)
{
    QProcess process;
    process.start(QStringLiteral(GARAGE_HOST), arguments);
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
    return runHost(QStringList {QStringLiteral("--stdio"), QStringLiteral("--plugin"), fakePlugin,
                                QStringLiteral("--home"), hostHome()}
                       + more,
                   input);
}

QString TestGarageHost::writeFile(const QByteArray &text)
{
    QFile file(home().path() + QLatin1String("/play.jsonl"));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("Cannot write %s", qPrintable(file.fileName()));
    return file.fileName();
}

void TestGarageHost::helpExplainsEachOption()
{
    const HostRun run = runHost({QStringLiteral("--help")});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.complaints, QString());
    for (const QLatin1String option :
         {QLatin1String("--stdio"), QLatin1String("--due"), QLatin1String("--plugin"),
          QLatin1String("--home"), QLatin1String("--documents"), QLatin1String("--data"),
          QLatin1String("--seed"), QLatin1String("--fresh"), QLatin1String("--play"),
          QLatin1String("--screenshots"), QLatin1String("--validate"), QLatin1String("--json"),
          QLatin1String("--check"), QLatin1String("--time-limit")})
        QVERIFY2(run.output.contains(option), option.data());
    QVERIFY(run.output.contains(QStringLiteral("Коды завершения")));
    QVERIFY(!QFileInfo::exists(hostHome()));
}

void TestGarageHost::wrongArgumentsAreNamed_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("word");
    QTest::newRow("unknown option") << QStringList {QStringLiteral("--loud")} << QStringLiteral("loud");
    QTest::newRow("surplus word") << QStringList {QStringLiteral("kart")} << QStringLiteral("kart");
    QTest::newRow("unknown data") << QStringList {QStringLiteral("--data"), QStringLiteral("huge")}
                                  << QStringLiteral("huge");
    QTest::newRow("seed is no number")
        << QStringList {QStringLiteral("--seed"), QStringLiteral("x")} << QStringLiteral("--seed");
    QTest::newRow("documents started over")
        << QStringList {QStringLiteral("--documents"), QStringLiteral("--fresh")}
        << QStringLiteral("--fresh");
    QTest::newRow("empty value") << QStringList {QStringLiteral("--validate"), QString()}
                                 << QStringLiteral("--validate");
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
    QTest::newRow("no such file") << QStringLiteral("/nowhere/libmissing.so");
    QTest::newRow("not a library") << QStringLiteral("/etc/passwd");
    QTest::newRow("a library without a plug-in") << QStringLiteral(GARAGE_HOST);
}

void TestGarageHost::aPluginThatDoesNotLoadIsNamed()
{
    QFETCH(const QString, file);
    const HostRun run = runHost(
        {QStringLiteral("--stdio"), QStringLiteral("--plugin"), file, QStringLiteral("--home"), hostHome()});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.output, QString());
    QVERIFY2(run.complaints.contains(QStringLiteral("плагин не загружен")), qPrintable(run.complaints));
    QVERIFY2(run.complaints.contains(QFileInfo(file).fileName()), qPrintable(run.complaints));
}

void TestGarageHost::aHomeThatCannotBeMadeIsNamed()
{
    const HostRun run = runHost({QStringLiteral("--stdio"), QStringLiteral("--plugin"), fakePlugin,
                                 QStringLiteral("--home"), QStringLiteral("/proc/nowhere")});
    QCOMPARE(run.exitCode, 3);
    QVERIFY2(run.complaints.contains(QStringLiteral("/proc/nowhere")), qPrintable(run.complaints));
}

void TestGarageHost::theStartSequenceComesInOrder()
{
    const HostRun run = runStdio({});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.complaints, QString());
    QStringList told;
    for (const QJsonObject &message : run.messages())
        told.append(message.value(QLatin1String("data")).toObject().value(QLatin1String("event")).toString());
    QCOMPARE(told.mid(0, 4),
             (QStringList {QStringLiteral("load_complete"), QStringLiteral("personal_list"),
                           QStringLiteral("cars_list_changed"), QStringLiteral("run_saved_to_db")}));

    const QJsonArray cars =
        run.echoesOf(QStringLiteral("cars_list_changed")).first().value(QLatin1String("cars")).toArray();
    QCOMPARE(cars.size(), 24);
    for (const char *key : {"id", "num", "name", "car_guid", "available_for_runs"})
        QVERIFY2(cars.first().toObject().contains(QLatin1String(key)), key);
    const QJsonArray people =
        run.echoesOf(QStringLiteral("personal_list")).first().value(QLatin1String("personalList")).toArray();
    QCOMPARE(people.size(), 10);
    for (const char *key : {"id", "lastName", "firstName", "midName", "serviceCode"})
        QVERIFY2(people.first().toObject().contains(QLatin1String(key)), key);
}

void TestGarageHost::eachLineReachesThePluginAndEachEventComesBack()
{
    const HostRun run = runStdio("{\"module\":\"desk\",\"event\":\"car_complain\",\"data\":{\"carId\":7}}\n"
                                 "\n"
                                 "{\"event\":\"run_closed\"}");
    QCOMPARE(run.exitCode, 0);
    const QVector<QJsonObject> complaints = run.echoesOf(QStringLiteral("car_complain"));
    QCOMPARE(complaints.size(), 1);
    QCOMPARE(complaints.first().value(QLatin1String("carId")).toInt(), 7);
    QCOMPARE(run.echoesOf(QStringLiteral("run_closed")).size(), 1);
    QVERIFY(run.output.contains(QLatin1String("\"module\":\"desk\"")));
    for (const QJsonObject &message : run.messages())
        QCOMPARE(message.keys(),
                 (QStringList {QStringLiteral("data"), QStringLiteral("event"), QStringLiteral("module")}));
}

void TestGarageHost::badLinesAreNamedAndTheOthersHandedOver()
{
    const HostRun run = runStdio("garbage\n[1]\n{\"data\":{}}\n{\"event\":\"run_closed\"}\n");
    QCOMPARE(run.exitCode, 5);
    QCOMPARE(run.complaints.count(QStringLiteral("строка ")), 3);
    QCOMPARE(run.echoesOf(QStringLiteral("run_closed")).size(), 1);
}

void TestGarageHost::theLastReloadIsWaitedFor()
{
    const HostRun run = runStdio("{\"event\":\"run_closed\"}\n");
    QCOMPARE(run.events().last(), QStringLiteral("update_pending_service"));
}

void TestGarageHost::availabilityRequestsAreCarriedOutAndAnnounced()
{
    const HostRun run =
        runStdio("{\"event\":\"say\",\"data\":{\"event\":\"update_cars\",\"data\":"
                 "{\"command\":\"set_availability\",\"carsIdsList\":[101,102],\"available\":0}}}\n");
    QCOMPARE(run.exitCode, 0);
    const QVector<QJsonObject> lists = run.echoesOf(QStringLiteral("cars_list_changed"));
    QCOMPARE(lists.size(), 2);
    QCOMPARE(lists.last().value(QLatin1String("noStatsUpdate")).toBool(), true);
    int unavailable = 0;
    for (const QJsonValue &car : lists.last().value(QLatin1String("cars")).toArray()) {
        const int id = car.toObject().value(QLatin1String("id")).toInt();
        const bool available = car.toObject().value(QLatin1String("available_for_runs")).toBool();
        unavailable += (id == 101 || id == 102) && !available ? 1 : 0;
    }
    QCOMPARE(unavailable, 2);
}

void TestGarageHost::withoutAnythingDueTheTableSaysSo()
{
    const HostRun run = runHost({QStringLiteral("--due"), QStringLiteral("--plugin"), fakePlugin,
                                 QStringLiteral("--home"), hostHome()});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.output.contains(QStringLiteral("Обслуживание не требуется")), qPrintable(run.output));
}

void TestGarageHost::aFileOfEventsIsPlayedAndPhotographed()
{
    const QString file =
        writeFile("{\"event\":\"clicked\"}\n{\"screenshot\":\"garage\"}\n{\"event\":\"run_saved_to_db\"}\n");
    const QString pictures = home().path() + QLatin1String("/pictures");
    const HostRun run =
        runHost({QStringLiteral("--play"), file, QStringLiteral("--plugin"), fakePlugin,
                 QStringLiteral("--home"), hostHome(), QStringLiteral("--screenshots"), pictures});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.events().contains(QStringLiteral("insert_tab")));
    QCOMPARE(run.events().last(), QStringLiteral("update_pending_service"));
    QVERIFY(!QImage(pictures + QLatin1String("/garage.png")).isNull());
}

void TestGarageHost::aPictureThatCannotBeWrittenIsNamed()
{
    const QString noFolder = writeFile("{\"screenshot\":\"garage\"}\n");
    const QStringList arguments = {QStringLiteral("--screenshots"), noFolder,
                                   QStringLiteral("--plugin"),      fakePlugin,
                                   QStringLiteral("--home"),        hostHome()};
    for (const QStringList &way : {QStringList(), QStringList {QStringLiteral("--play"), noFolder}}) {
        const HostRun run = runHost(arguments + way);
        QCOMPARE(run.exitCode, 8);
        QVERIFY2(run.complaints.contains(noFolder), qPrintable(run.complaints));
    }
}

void TestGarageHost::aPlayFileWithABadLineIsNamed()
{
    const HostRun run = runHost({QStringLiteral("--play"), writeFile("hello"), QStringLiteral("--plugin"),
                                 fakePlugin, QStringLiteral("--home"), hostHome()});
    QCOMPARE(run.exitCode, 5);
    QVERIFY2(run.complaints.contains(QStringLiteral("строка 1")), qPrintable(run.complaints));
}

void TestGarageHost::withoutADisplayTheWindowIsPhotographed()
{
    const HostRun run =
        runHost({QStringLiteral("--plugin"), fakePlugin, QStringLiteral("--home"), hostHome()});
    QCOMPARE(run.exitCode, 0);
    const QStringList pictures =
        QDir(hostHome() + QLatin1String("/screenshots")).entryList({QStringLiteral("*.png")});
    QCOMPARE(run.output.count(QStringLiteral("Снимок: ")), pictures.size());
    QVERIFY(pictures.size() >= 6);
}

void TestGarageHost::theDatabaseLiesInTheHomeAndIsKept()
{
    QCOMPARE(runStdio({}).exitCode, 0);
    {
        const TestDatabase database(hostDatabase(), false);
        QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM cars")).toInt(), 24);
        database.exec(QStringLiteral("DELETE FROM cars WHERE id>105"));
    }
    QCOMPARE(runStdio({}).exitCode, 0);
    const TestDatabase database(hostDatabase(), false);
    QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM cars")).toInt(), 5);
}

void TestGarageHost::aFileWithoutItsCarsIsKept()
{
    QCOMPARE(runStdio({}).exitCode, 0);
    {
        const TestDatabase database(hostDatabase(), false);
        database.exec(QStringLiteral("DELETE FROM cars"));
    }
    QCOMPARE(runStdio({}).exitCode, 0);
    const TestDatabase database(hostDatabase(), false);
    QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM cars")).toInt(), 0);
    QVERIFY(database.value(QStringLiteral("SELECT count(*) FROM laps")).toInt() > 0);
}

void TestGarageHost::freshStartsOver()
{
    QCOMPARE(runStdio({}, {QStringLiteral("--data"), QStringLiteral("empty")}).exitCode, 0);
    QCOMPARE(runStdio({}, {QStringLiteral("--fresh")}).exitCode, 0);
    const TestDatabase database(hostDatabase(), false);
    QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM cars")).toInt(), 24);
}

void TestGarageHost::documentsAreOnlyTouchedWhenAskedFor()
{
    QCOMPARE(runStdio({}).exitCode, 0);
    QVERIFY(!QFileInfo::exists(home().databasePath()));

    const HostRun run = runHost(
        {QStringLiteral("--stdio"), QStringLiteral("--plugin"), fakePlugin, QStringLiteral("--documents")});
    QCOMPARE(run.exitCode, 0);
    const TestDatabase database(home().databasePath(), false);
    QCOMPARE(database.value(QStringLiteral("SELECT count(*) FROM cars")).toInt(), 0);
}

void TestGarageHost::theTourWritesNothingIntoRealDocuments()
{
    const std::unique_ptr<TestDatabase> database = createDatabase();
    for (int car = 1; car <= 5; ++car)
        database->addCar(car, QString::number(car), QStringLiteral("Вихрь"));
    const QString pictures = home().path() + QLatin1String("/pictures");
    const HostRun run = runHost({QStringLiteral("--documents"), QStringLiteral("--plugin"), fakePlugin,
                                 QStringLiteral("--screenshots"), pictures});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(database->value(QStringLiteral("SELECT count(*) FROM laps")).toInt(), 0);
    QCOMPARE(database->value(QStringLiteral("SELECT count(*) FROM cars")).toInt(), 5);
}

GARAGE_TEST_WITHOUT_WINDOWS(TestGarageHost)
#include "tst_garagehost.moc"
