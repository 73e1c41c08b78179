#include "support/garagetest.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace {

struct Verdict
{
    int exitCode = -1;
    QString output;
    QString complaints;

    QJsonObject json() const { return QJsonDocument::fromJson(output.toUtf8()).object(); }
    /// The report's line of that check; empty if it has none.
    QString line(const QString &check) const
    {
        for (const QString &line : output.split('\n')) {
            if (line.section(' ', 1).trimmed().startsWith(check + ':'))
                return line;
        }
        return {};
    }
    QString lastLine() const { return output.trimmed().section('\n', -1); }
};

const QString realPlugin = GARAGE_PLUGIN;

QString broken(const QString &fault)
{
    return QString(FIXTURES "/libbroken_%1.so").arg(fault);
}

} // namespace

/// The demo host's validator as a developer of plug-ins uses it.
class TestValidation final : public GarageTest
{
    Q_OBJECT

private slots:
    void theRealPluginPassesEveryCheck();
    void eachFaultIsFoundByItsCheck_data();
    void eachFaultIsFoundByItsCheck();
    void aPluginOfAnotherKindFails();
    void whatDoesNotLoadFailsOnceAndSkipsTheRest_data();
    void whatDoesNotLoadFailsOnceAndSkipsTheRest();
    void theReportIsAlsoJson();
    void wrongRequestsAreNamed_data();
    void wrongRequestsAreNamed();
    void theUsersDocumentsStayUntouched();

private:
    static Verdict validate(const QString &library, const QStringList &more = {});
};

Verdict TestValidation::validate(const QString &library, const QStringList &more)
{
    QProcess process;
    process.start(
        GARAGE_HOST,
        QStringList {QStringLiteral("--lang"), QStringLiteral("en"), QStringLiteral("--validate"), library}
            + more);
    if (!process.waitForFinished(200000))
        return {};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

void TestValidation::theRealPluginPassesEveryCheck()
{
    const Verdict verdict = validate(realPlugin);
    QVERIFY2(verdict.exitCode == 0, qPrintable(verdict.output));
    QCOMPARE(verdict.complaints, QString());
    const int checks = int(verdict.output.count("PASSED "));
    QVERIFY(checks >= 25);
    QCOMPARE(verdict.lastLine(), QString("%1 passed, 0 failed").arg(checks));
    QCOMPARE(verdict.output.trimmed().count('\n'), checks);
}

void TestValidation::eachFaultIsFoundByItsCheck_data()
{
    QTest::addColumn<QString>("check");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("soundCheck"); // near by, and not touched by the fault
    QTest::newRow("wrong_identifier") << "metadata"
                                      << "/v0.9"
                                      << "entry-points";
    QTest::newRow("answers_in_wrong_order") << "load-complete"
                                            << "update_remote_service, read_cars_list instead"
                                            << "insert-tab";
    QTest::newRow("crashes_on_bad_input") << "bad-input"
                                          << "crashed"
                                          << "silent-events";
    QTest::newRow("writes_one_by_one") << "transaction"
                                       << "the number of transactions"
                                       << "remote-record";
    QTest::newRow("hangs_on_a_lock") << "locked-database"
                                     << "hangs"
                                     << "transaction";
}

void TestValidation::eachFaultIsFoundByItsCheck()
{
    QFETCH(const QString, check);
    QFETCH(const QString, reason);
    QFETCH(const QString, soundCheck);
    const Verdict verdict = validate(broken(QString::fromLatin1(QTest::currentDataTag())),
                                     {"--check", check, "--check", soundCheck, "--time-limit", "4"});
    QCOMPARE(verdict.exitCode, 7);
    QVERIFY2(verdict.line(check).startsWith("FAILED "), qPrintable(verdict.output));
    QVERIFY2(verdict.line(check).contains(reason), qPrintable(verdict.output));
    QVERIFY2(verdict.line(soundCheck).startsWith("PASSED "), qPrintable(verdict.output));
    QCOMPARE(verdict.lastLine(), "1 passed, 1 failed");
}

void TestValidation::aPluginOfAnotherKindFails()
{
    const Verdict verdict = validate(FAKE_PLUGIN, {"--check", "event-lists", "--check", "insert-tab"});
    QCOMPARE(verdict.exitCode, 7);
    QVERIFY2(verdict.line("event-lists").contains("emittedEvents() is []"), qPrintable(verdict.output));
    QVERIFY2(verdict.line("insert-tab").startsWith("FAILED "), qPrintable(verdict.output));
}

void TestValidation::whatDoesNotLoadFailsOnceAndSkipsTheRest_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("not a library") << "/etc/passwd";
    QTest::newRow("a program") << GARAGE_HOST;
}

void TestValidation::whatDoesNotLoadFailsOnceAndSkipsTheRest()
{
    QFETCH(const QString, file);
    const Verdict verdict = validate(file);
    QCOMPARE(verdict.exitCode, 7);
    QVERIFY2(verdict.line("loading").startsWith("FAILED "), qPrintable(verdict.output));
    const int skipped = int(verdict.output.count("SKIPPED "));
    QVERIFY(skipped >= 25);
    QCOMPARE(verdict.lastLine(), QString("0 passed, 1 failed, %1 skipped").arg(skipped));
}

void TestValidation::theReportIsAlsoJson()
{
    const Verdict verdict = validate(broken("answers_in_wrong_order"),
                                     {"--json", "--check", "load-complete", "--check", "event-lists"});
    QCOMPARE(verdict.exitCode, 7);
    const QJsonObject report = verdict.json();
    QCOMPARE(report.value("passed").toInt(-1), 1);
    QCOMPARE(report.value("failed").toInt(-1), 1);
    QCOMPARE(report.value("skipped").toInt(-1), 0);
    const QJsonArray checks = report.value("checks").toArray();
    QCOMPARE(checks.size(), 2);
    const QJsonObject failed = checks.last().toObject();
    QCOMPARE(failed.value("name").toString(), "load-complete");
    QCOMPARE(failed.value("outcome").toString(), "FAILED");
    QVERIFY(!failed.value("title").toString().isEmpty());
    QVERIFY(!failed.value("reason").toString().isEmpty());
}

void TestValidation::wrongRequestsAreNamed_data()
{
    QTest::addColumn<QStringList>("more");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("word");
    QTest::newRow("unknown check") << QStringList {"--check", "beauty"} << 1 << "beauty";
    QTest::newRow("no time") << QStringList {"--time-limit", "0"} << 1 << "--time-limit";
    QTest::newRow("two ways at once") << QStringList {"--stdio"} << 1 << "--stdio";
    QTest::newRow("no such file") << QStringList() << 2 << "/nowhere/libmissing.so";
}

void TestValidation::wrongRequestsAreNamed()
{
    QFETCH(const QStringList, more);
    QFETCH(const int, exitCode);
    QFETCH(const QString, word);
    const Verdict verdict = validate("/nowhere/libmissing.so", more);
    QCOMPARE(verdict.exitCode, exitCode);
    QCOMPARE(verdict.output, QString());
    QVERIFY2(verdict.complaints.contains(word), qPrintable(verdict.complaints));
}

void TestValidation::theUsersDocumentsStayUntouched()
{
    QCOMPARE(validate(realPlugin, {"--check", "remote-record"}).exitCode, 0);
    QVERIFY(!QFileInfo::exists(home().databasePath()));
}

GARAGE_TEST_WITHOUT_WINDOWS(TestValidation)
#include "tst_validation.moc"
