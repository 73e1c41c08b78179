#include "support/garagetest.h"

#include "host/app/demohost.h"
#include "host/app/hostwindow.h"
#include "host/database/datafolder.h"
#include "host/database/hostdatabase.h"
#include "host/terminal/translation.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLibraryInfo>
#include <QProcess>
#include <QPushButton>
#include <QTabWidget>
#include <QTranslator>
#include <QXmlStreamReader>

namespace {

const QStringList languages = {QStringLiteral("en"), QStringLiteral("ru")};

struct ProgramRun
{
    int exitCode = -1;
    QString output;
    QString errors;
};

ProgramRun runProgram(const QStringList &arguments, const QString &systemLanguage = QStringLiteral("C.UTF-8"))
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), systemLanguage);
    environment.remove(QStringLiteral("LANGUAGE"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(GARAGE_HOST), arguments);
    process.closeWriteChannel();
    if (!process.waitForFinished(60000))
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

/// The report without what differs from run to run.
QJsonObject reportOf(const QString &language)
{
    const ProgramRun run =
        runProgram({QStringLiteral("--lang"), language, QStringLiteral("--validate"),
                    QStringLiteral(FAKE_PLUGIN), QStringLiteral("--json"), QStringLiteral("--check"),
                    QStringLiteral("event-lists"), QStringLiteral("--check"), QStringLiteral("loading")});
    QJsonObject report = QJsonDocument::fromJson(run.output.toUtf8()).object();
    QJsonArray checks;
    for (const QJsonValue &value : report.value(QLatin1String("checks")).toArray()) {
        QJsonObject check = value.toObject();
        check.remove(QStringLiteral("milliseconds"));
        checks.append(check);
    }
    report.insert(QStringLiteral("checks"), checks);
    report.insert(QStringLiteral("exitCode"), run.exitCode);
    return report;
}

} // namespace

/// The languages of the demo host.
class TestTranslation final : public GarageTest
{
    Q_OBJECT

private slots:
    void cleanup();
    void everyMessageIsTranslated();
    void theHelpIsInTheLanguageOfTheOption_data();
    void theHelpIsInTheLanguageOfTheOption();
    void theSystemsLanguageDecidesWithoutTheOption_data();
    void theSystemsLanguageDecidesWithoutTheOption();
    void errorsAndTablesFollowTheLanguage_data();
    void errorsAndTablesFollowTheLanguage();
    void anUnknownLanguageIsAnError();
    void theReportOfTheValidatorFollowsTheLanguage();
    void machineOutputIsTheSameInEveryLanguage();
    void windowsFollowTheLanguageAndTheGarageStaysRussian();
    void textsOfQtFollowTheLanguage_data();
    void textsOfQtFollowTheLanguage();
};

/// The application object and the default locale outlive a test.
void TestTranslation::cleanup()
{
    qDeleteAll(qApp->findChildren<QTranslator *>());
    QLocale::setDefault(QLocale::system());
    GarageTest::cleanup();
}

void TestTranslation::everyMessageIsTranslated()
{
    QFile file(QStringLiteral(TRANSLATIONS));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
    QXmlStreamReader xml(&file);
    QString source;
    int translated = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("source")) {
            source = xml.readElementText(QXmlStreamReader::SkipChildElements);
        } else if (xml.name() == QLatin1String("translation")) {
            QVERIFY2(!xml.attributes().hasAttribute(QLatin1String("type")), qPrintable(source));
            QVERIFY2(!xml.readElementText(QXmlStreamReader::SkipChildElements).isEmpty(), qPrintable(source));
            ++translated;
        }
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    QVERIFY(translated > 200);
}

void TestTranslation::theHelpIsInTheLanguageOfTheOption_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("ownText");
    QTest::addColumn<QString>("textOfQt");
    QTest::newRow("en") << QStringLiteral("en") << QStringLiteral("Exit codes: 0")
                        << QStringLiteral("Usage:");
    QTest::newRow("ru") << QStringLiteral("ru") << QStringLiteral("Коды завершения: 0")
                        << QStringLiteral("Использование:");
}

void TestTranslation::theHelpIsInTheLanguageOfTheOption()
{
    QFETCH(const QString, language);
    QFETCH(const QString, ownText);
    QFETCH(const QString, textOfQt);
    const ProgramRun run = runProgram({QStringLiteral("--help"), QLatin1String("--lang=") + language});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.output.contains(ownText), qPrintable(run.output));
    const QString ofQt =
        QLibraryInfo::location(QLibraryInfo::TranslationsPath) + QLatin1String("/qtbase_ru.qm");
    if (language == QLatin1String("ru") && !QFile::exists(ofQt))
        QSKIP("Qt's own translations are not installed");
    QVERIFY2(run.output.contains(textOfQt), qPrintable(run.output));
}

void TestTranslation::theSystemsLanguageDecidesWithoutTheOption_data()
{
    QTest::addColumn<QString>("systemLanguage");
    QTest::addColumn<QString>("text");
    QTest::newRow("Russian") << QStringLiteral("ru_RU.UTF-8") << QStringLiteral("Коды завершения");
    QTest::newRow("German") << QStringLiteral("de_DE.UTF-8") << QStringLiteral("Exit codes");
    QTest::newRow("none") << QStringLiteral("C") << QStringLiteral("Exit codes");
}

void TestTranslation::theSystemsLanguageDecidesWithoutTheOption()
{
    QFETCH(const QString, systemLanguage);
    QFETCH(const QString, text);
    const ProgramRun run = runProgram({QStringLiteral("--help")}, systemLanguage);
    QVERIFY2(run.output.contains(text), qPrintable(run.output));
}

void TestTranslation::errorsAndTablesFollowTheLanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("table");
    QTest::newRow("en") << QStringLiteral("en") << QStringLiteral("--seed must be an integer")
                        << QStringLiteral("No service is due");
    QTest::newRow("ru") << QStringLiteral("ru") << QStringLiteral("--seed должен быть целым числом")
                        << QStringLiteral("Обслуживание не требуется");
}

void TestTranslation::errorsAndTablesFollowTheLanguage()
{
    QFETCH(const QString, language);
    QFETCH(const QString, error);
    QFETCH(const QString, table);
    const ProgramRun bad =
        runProgram({QStringLiteral("--lang"), language, QStringLiteral("--seed"), QStringLiteral("x")});
    QCOMPARE(bad.exitCode, 1);
    QVERIFY2(bad.errors.contains(error), qPrintable(bad.errors));

    const ProgramRun due = runProgram({QStringLiteral("--lang"), language, QStringLiteral("--due"),
                                       QStringLiteral("--plugin"), QStringLiteral(FAKE_PLUGIN),
                                       QStringLiteral("--home"), home().path() + QLatin1String("/host")});
    QCOMPARE(due.exitCode, 0);
    QVERIFY2(due.output.contains(table), qPrintable(due.output));
}

void TestTranslation::anUnknownLanguageIsAnError()
{
    const ProgramRun run = runProgram({QStringLiteral("--lang"), QStringLiteral("fr")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.errors.contains(QLatin1String("ru, en")), qPrintable(run.errors));
}

void TestTranslation::theReportOfTheValidatorFollowsTheLanguage()
{
    const QStringList titles = {QStringLiteral("loading: the library loads"),
                                QStringLiteral("loading: библиотека загружается")};
    const QStringList reasons = {QStringLiteral("is [] instead of"), QStringLiteral(": [] вместо")};
    for (int at = 0; at < languages.size(); ++at) {
        const ProgramRun run =
            runProgram({QStringLiteral("--lang"), languages.at(at), QStringLiteral("--validate"),
                        QStringLiteral(FAKE_PLUGIN), QStringLiteral("--check"), QStringLiteral("loading"),
                        QStringLiteral("--check"), QStringLiteral("event-lists")});
        QCOMPARE(run.exitCode, 7);
        QVERIFY2(run.output.contains(titles.at(at)), qPrintable(run.output));
        QVERIFY2(run.output.contains(reasons.at(at)), qPrintable(run.output)); // from the check's own process
    }
}

void TestTranslation::machineOutputIsTheSameInEveryLanguage()
{
    const QJsonObject report = reportOf(QStringLiteral("en"));
    QCOMPARE(report.value(QLatin1String("checks")).toArray().size(), 2);
    QCOMPARE(reportOf(QStringLiteral("ru")), report);
}

void TestTranslation::windowsFollowTheLanguageAndTheGarageStaysRussian()
{
    const DataFolder documents = DataFolder::userDocuments();
    QVERIFY(HostDatabase::prepare(documents));
    DemoHost host(documents, 1);
    QVERIFY(host.plugin().load(QStringLiteral(GARAGE_PLUGIN)));
    const QString russianTab = QStringLiteral("Трасса");
    for (const QString &language : languages) {
        Translation::install(language);
        HostWindow window(host, documents);
        window.start();
        window.openGarage();
        QCOMPARE(window.tabs().tabText(0), QStringLiteral("Гараж"));
        QCOMPARE(window.tabs().tabText(1) == russianTab, language == QLatin1String("ru"));
    }
}

void TestTranslation::textsOfQtFollowTheLanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("cancel");
    QTest::addColumn<QString>("month");
    QTest::newRow("en") << QStringLiteral("en") << QStringLiteral("Cancel") << QStringLiteral("March");
    QTest::newRow("ru") << QStringLiteral("ru") << QStringLiteral("Отмена") << QStringLiteral("март");
}

void TestTranslation::textsOfQtFollowTheLanguage()
{
    QFETCH(const QString, language);
    QFETCH(const QString, cancel);
    QFETCH(const QString, month);
    Translation::install(language);
    const QDialogButtonBox buttons(QDialogButtonBox::Cancel);
    QCOMPARE(buttons.button(QDialogButtonBox::Cancel)->text().remove(QLatin1Char('&')), cancel);
    QCOMPARE(QLocale().standaloneMonthName(3).toLower(), month.toLower());
}

GARAGE_TEST(TestTranslation)
#include "tst_translation.moc"
