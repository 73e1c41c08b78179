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
        for (const QString &line : output.split(QLatin1Char('\n'))) {
            if (line.section(QLatin1Char(' '), 1).trimmed().startsWith(check + QLatin1Char(':')))
                return line;
        }
        return {};
    }
    QString lastLine() const { return output.trimmed().section(QLatin1Char('\n'), -1); }
};

const QString realPlugin = QStringLiteral(GARAGE_PLUGIN);

QString broken(const QString &fault)
{
    return QStringLiteral(FIXTURES "/libbroken_%1.so").arg(fault);
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
    process.start(QStringLiteral(GARAGE_HOST), QStringList {QStringLiteral("--validate"), library} + more);
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
    const int checks = verdict.output.count(QLatin1String("PASSED "));
    QVERIFY(checks >= 25);
    QCOMPARE(verdict.lastLine(), QStringLiteral("%1 passed, 0 failed").arg(checks));
    QCOMPARE(verdict.output.trimmed().count(QLatin1Char('\n')), checks);
}

void TestValidation::eachFaultIsFoundByItsCheck_data()
{
    QTest::addColumn<QString>("check");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("soundCheck"); // near by, and not touched by the fault
    QTest::newRow("wrong_identifier")
        << QStringLiteral("metadata") << QStringLiteral("/v0.9") << QStringLiteral("entry-points");
    QTest::newRow("answers_in_wrong_order")
        << QStringLiteral("load-complete") << QStringLiteral("update_remote_service, read_cars_list instead")
        << QStringLiteral("insert-tab");
    QTest::newRow("crashes_on_bad_input")
        << QStringLiteral("bad-input") << QStringLiteral("crashed") << QStringLiteral("silent-events");
    QTest::newRow("writes_one_by_one")
        << QStringLiteral("transaction") << QStringLiteral("the number of transactions")
        << QStringLiteral("remote-record");
    QTest::newRow("hangs_on_a_lock") << QStringLiteral("locked-database") << QStringLiteral("hangs")
                                     << QStringLiteral("transaction");
}

void TestValidation::eachFaultIsFoundByItsCheck()
{
    QFETCH(const QString, check);
    QFETCH(const QString, reason);
    QFETCH(const QString, soundCheck);
    const Verdict verdict = validate(broken(QString::fromLatin1(QTest::currentDataTag())),
                                     {QStringLiteral("--check"), check, QStringLiteral("--check"), soundCheck,
                                      QStringLiteral("--time-limit"), QStringLiteral("4")});
    QCOMPARE(verdict.exitCode, 7);
    QVERIFY2(verdict.line(check).startsWith(QLatin1String("FAILED ")), qPrintable(verdict.output));
    QVERIFY2(verdict.line(check).contains(reason), qPrintable(verdict.output));
    QVERIFY2(verdict.line(soundCheck).startsWith(QLatin1String("PASSED ")), qPrintable(verdict.output));
    QCOMPARE(verdict.lastLine(), QStringLiteral("1 passed, 1 failed"));
}

void TestValidation::aPluginOfAnotherKindFails()
{
    const Verdict verdict = validate(QStringLiteral(FAKE_PLUGIN),
                                     {QStringLiteral("--check"), QStringLiteral("event-lists"),
                                      QStringLiteral("--check"), QStringLiteral("insert-tab")});
    QCOMPARE(verdict.exitCode, 7);
    QVERIFY2(verdict.line(QStringLiteral("event-lists")).contains(QLatin1String("emittedEvents() is []")),
             qPrintable(verdict.output));
    QVERIFY2(verdict.line(QStringLiteral("insert-tab")).startsWith(QLatin1String("FAILED ")),
             qPrintable(verdict.output));
}

void TestValidation::whatDoesNotLoadFailsOnceAndSkipsTheRest_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("not a library") << QStringLiteral("/etc/passwd");
    QTest::newRow("a program") << QStringLiteral(GARAGE_HOST);
}

void TestValidation::whatDoesNotLoadFailsOnceAndSkipsTheRest()
{
    QFETCH(const QString, file);
    const Verdict verdict = validate(file);
    QCOMPARE(verdict.exitCode, 7);
    QVERIFY2(verdict.line(QStringLiteral("loading")).startsWith(QLatin1String("FAILED ")),
             qPrintable(verdict.output));
    const int skipped = verdict.output.count(QLatin1String("SKIPPED "));
    QVERIFY(skipped >= 25);
    QCOMPARE(verdict.lastLine(), QStringLiteral("0 passed, 1 failed, %1 skipped").arg(skipped));
}

void TestValidation::theReportIsAlsoJson()
{
    const Verdict verdict =
        validate(broken(QStringLiteral("answers_in_wrong_order")),
                 {QStringLiteral("--json"), QStringLiteral("--check"), QStringLiteral("load-complete"),
                  QStringLiteral("--check"), QStringLiteral("event-lists")});
    QCOMPARE(verdict.exitCode, 7);
    const QJsonObject report = verdict.json();
    QCOMPARE(report.value(QLatin1String("passed")).toInt(-1), 1);
    QCOMPARE(report.value(QLatin1String("failed")).toInt(-1), 1);
    QCOMPARE(report.value(QLatin1String("skipped")).toInt(-1), 0);
    const QJsonArray checks = report.value(QLatin1String("checks")).toArray();
    QCOMPARE(checks.size(), 2);
    const QJsonObject failed = checks.last().toObject();
    QCOMPARE(failed.value(QLatin1String("name")).toString(), QStringLiteral("load-complete"));
    QCOMPARE(failed.value(QLatin1String("outcome")).toString(), QStringLiteral("FAILED"));
    QVERIFY(!failed.value(QLatin1String("title")).toString().isEmpty());
    QVERIFY(!failed.value(QLatin1String("reason")).toString().isEmpty());
}

void TestValidation::wrongRequestsAreNamed_data()
{
    QTest::addColumn<QStringList>("more");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("word");
    QTest::newRow("unknown check") << QStringList {QStringLiteral("--check"), QStringLiteral("beauty")} << 1
                                   << QStringLiteral("beauty");
    QTest::newRow("no time") << QStringList {QStringLiteral("--time-limit"), QStringLiteral("0")} << 1
                             << QStringLiteral("--time-limit");
    QTest::newRow("two ways at once")
        << QStringList {QStringLiteral("--stdio")} << 1 << QStringLiteral("--stdio");
    QTest::newRow("no such file") << QStringList() << 2 << QStringLiteral("/nowhere/libmissing.so");
}

void TestValidation::wrongRequestsAreNamed()
{
    QFETCH(const QStringList, more);
    QFETCH(const int, exitCode);
    QFETCH(const QString, word);
    const Verdict verdict = validate(QStringLiteral("/nowhere/libmissing.so"), more);
    QCOMPARE(verdict.exitCode, exitCode);
    QCOMPARE(verdict.output, QString());
    QVERIFY2(verdict.complaints.contains(word), qPrintable(verdict.complaints));
}

void TestValidation::theUsersDocumentsStayUntouched()
{
    QCOMPARE(validate(realPlugin, {QStringLiteral("--check"), QStringLiteral("remote-record")}).exitCode, 0);
    QVERIFY(!QFileInfo::exists(home().databasePath()));
}

GARAGE_TEST_WITHOUT_WINDOWS(TestValidation)
#include "tst_validation.moc"
