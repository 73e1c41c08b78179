#include "htmlpage.h"
#include "support/databaselock.h"
#include "support/garagetest.h"
#include "tool.h"

#include "garagectl/fleet/servicelog.h"
#include "garagectl/output/textwidth.h"
#include "garagectl/report/reportpage.h"
#include "garagectl/wording.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QProcess>

#include <algorithm>

namespace {

constexpr int carCount = 5;
constexpr int operationCount = 12; // more than fit into one table

QString utc(const QDateTime &time)
{
    return time.toUTC().toString("yyyy-MM-ddThh:mm:ss.zzzZ");
}

/// Karts of two models that have driven on each of the last days, and operations in every state.
void fill(const TestDatabase &database)
{
    const QDateTime now = QDateTime::currentDateTime();
    database.exec("BEGIN");
    for (int car = 1; car <= carCount; ++car)
        database.addCar(car, QString::number(car), car < carCount ? "Вихрь" : "Sodi");
    for (int operation = 1; operation <= operationCount; ++operation) {
        database.addOperation(operation, QString("Operation %1").arg(operation));
        database.addLimit("Вихрь", operation, 0, 0, 12 * operation);
    }
    database.addLimit("Sodi", 1, 0, 0, 40);
    for (int car = 1; car <= carCount; ++car) {
        for (int operation = 1; operation < operationCount; ++operation) {
            const bool isOpen = operation == car;
            database.addRecord(car, operation, utc(now.addDays(-car - operation)), isOpen ? 0 : 1, "later");
        }
        for (int day = 1; day <= 20; ++day) {
            for (int lap = 0; lap < 5; ++lap)
                database.addLap(car, 10 * day, utc(now.addDays(-day).addSecs(60 * lap)), 50000);
        }
    }
    database.addRecord(2, -1, utc(now.addDays(-1)), 0, "noise");
    database.addRecord(99, 1, utc(now.addDays(-1)), 1, "of a deleted kart");
    database.exec("UPDATE maintainance SET person_name = 'Ким' WHERE car_id = 1");
    database.exec("COMMIT");
}

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int countStates(const QJsonArray &rows, const QString &state, bool withComplaints)
{
    return int(std::count_if(rows.begin(), rows.end(), [&](const QJsonValue &row) {
        return row.toObject().value("state") == state
            && (withComplaints || row.toObject().value("operationId") != -1);
    }));
}

int countWithClass(const QVector<HtmlPage::Element> &elements, const QString &name)
{
    return int(std::count_if(elements.cbegin(), elements.cend(), [&name](const HtmlPage::Element &element) {
        return element.classes().contains(name);
    }));
}

} // namespace

/// The page of "garagectl report", by the real program and a parser of HTML.
class TestToolReport : public GarageTest
{
    Q_OBJECT
private slots:
    void countsAreThoseOfDue();
    void theCalendarHoldsTheForecast();
    void theWorkIsThatOfTheHistory();
    void eachKartHasItsHistory();
    void filtersAndWeeksLimitThePage();
    void nothingIsLoadedOrRun();
    void hostileNamesStayText_data();
    void hostileNamesStayText();
    void thereMayBeNoRows();
    void theClockDecidesTheDays();
    void aPageThatCannotBeWrittenIsReported();
    void aDatabaseIsNeverReplaced();
    void anInterruptedPageLeavesTheOldOne();

private:
    QString pagePath() { return home().path() + "/report.html"; }
    HtmlPage report(const QStringList &options = {});
};

HtmlPage TestToolReport::report(const QStringList &options)
{
    const Tool::Result result = Tool::run(QStringList {"report", pagePath()} + options);
    [&result] { QVERIFY2(result.exitCode == 0, qPrintable(result.errors)); }();
    return HtmlPage(fileBytes(pagePath()));
}

void TestToolReport::countsAreThoseOfDue()
{
    fill(*createDatabase());
    const HtmlPage page = report({"--soon", "70"});
    const QJsonArray rows = Tool::run({"due", "--soon", "70", "--format", "json"}).rows();
    QCOMPARE(page.errors(), 0);
    QCOMPARE(page.text("count-karts"), QString::number(carCount));
    const QVector<HtmlPage::Element> cells = page.all("td", "fleet");
    const QVector<HtmlPage::Element> listed = page.all("tr", "list");
    for (const char *state : {"open", "due", "soon"}) {
        const int count = countStates(rows, state, true);
        QVERIFY(count > 0);
        QCOMPARE(page.text(QString("count-") + state), QString::number(count));
        QCOMPARE(countWithClass(listed, state), count);
    }
    for (const char *state : {"open", "due", "soon", "ok", "never"}) {
        QVERIFY(countStates(rows, state, false) > 0);
        QCOMPARE(countWithClass(cells, state), countStates(rows, state, false));
    }

    // Each bar is as long as its share, up to 150 %.
    QStringList widths;
    for (const HtmlPage::Element &element : page.all("rect", "fleet")) {
        if (element.classes().contains("fill") && !element.path.contains(" legend "))
            widths.append(element.attributes.value("width"));
    }
    QStringList shares;
    for (const QJsonValue &value : rows) {
        const QJsonObject row = value.toObject();
        if (!row.value("share").isNull())
            shares.append(QString::number(std::min(row.value("share").toDouble() * 100, 150.0)));
    }
    widths.sort();
    shares.sort();
    QCOMPARE(widths, shares);
}

void TestToolReport::theCalendarHoldsTheForecast()
{
    fill(*createDatabase());
    const HtmlPage page = report({"--weeks", "1"});
    QCOMPARE(page.all("td", "calendar").size(), 7);
    const HtmlPage months = report({"--weeks", "10"});
    const QDate today = QDate::currentDate();
    const QDate end = today.addDays(Qt::Monday - today.dayOfWeek() + 70);
    QMap<QString, int> expected;
    for (const QJsonValue &value : Tool::run({"forecast", "--format", "json"}).rows()) {
        const QString day = value.toObject().value("expectedDate").toString();
        const bool isOpen = value.toObject().value("state") == "open"; // now
        if (!isOpen && !day.isEmpty() && QDate::fromString(day, Qt::ISODate) < end)
            ++expected[day];
    }
    QVERIFY(expected.size() > 2);
    QMap<QString, int> shown;
    QString day;
    for (const HtmlPage::Element &element : months.elements()) {
        if (!element.path.contains(" calendar "))
            continue;
        if (element.tag == "time")
            day = element.attributes.value("datetime");
        if (element.tag == "a")
            ++shown[day];
    }
    QCOMPARE(shown, expected);
}

void TestToolReport::theWorkIsThatOfTheHistory()
{
    fill(*createDatabase());
    const HtmlPage page = report({"--weeks", "10"});
    int done = 0;
    int doneByKim = 0;
    for (const QJsonValue &value : Tool::run({"history", "--format", "json"}).rows()) {
        const QJsonObject row = value.toObject();
        done += row.value("state") == "done" ? 1 : 0;
        doneByKim += row.value("state") == "done" && row.value("person") == "Ким" ? 1 : 0;
    }
    QVERIFY(doneByKim > 0 && doneByKim < done);
    QStringList totals;
    for (const HtmlPage::Element &cell : page.all("td", "work")) {
        if (cell.classes().contains("total"))
            totals.append(cell.text);
    }
    QCOMPARE(
        totals,
        QStringList({QString::number(done), QString::number(done - doneByKim), QString::number(doneByKim)}));
    int columns = 0;
    for (const HtmlPage::Element &number : page.all("text", "all"))
        columns += number.classes().isEmpty() ? number.text.toInt() : 0;
    QCOMPARE(columns, done);
}

void TestToolReport::eachKartHasItsHistory()
{
    fill(*createDatabase());
    const HtmlPage page = report({"--records", "3"});
    QCOMPARE(page.all("article").size(), carCount + 1); // and the deleted kart
    QCOMPARE(page.all("tr", "log").size(), 1 * (carCount + 1) + 3 * carCount + 1); // with the titles
    QVERIFY2(page.text("kart-1").contains("Earlier records: 8"), qPrintable(page.text("kart-1")));
    QCOMPARE(page.all("li", "open").size(), carCount + 1);
    QVERIFY(page.all("article").last().text.contains("of a deleted kart"));
    // Every reference has its target.
    QStringList ids;
    for (const HtmlPage::Element &element : page.elements())
        ids.append('#' + element.attributes.value("id"));
    for (const HtmlPage::Element &reference : page.all("a"))
        QVERIFY2(ids.contains(reference.attributes.value("href")),
                 qPrintable(reference.attributes.value("href")));
}

void TestToolReport::filtersAndWeeksLimitThePage()
{
    fill(*createDatabase());
    const HtmlPage page = report({"--model", "Sodi"});
    QCOMPARE(page.text("count-karts"), QString("1"));
    QCOMPARE(page.all("article").size(), 1);
    QVERIFY(!page.text("fleet").contains("Вихрь"));
    for (const QStringList &wrong :
         {QStringList {"--weeks", "0"}, QStringList {"--records", "-1"}, QStringList {"--soon", "x"}})
        QCOMPARE(Tool::run(QStringList {"report", pagePath()} + wrong).exitCode, 1);
    QCOMPARE(Tool::run({"report"}).exitCode, 1);
}

void TestToolReport::nothingIsLoadedOrRun()
{
    fill(*createDatabase());
    const HtmlPage page = report();
    for (const char *tag : {"script", "link", "img", "iframe", "object", "embed", "form", "base", "image"})
        QVERIFY2(page.all(tag).isEmpty(), tag);
    for (const HtmlPage::Element &element : page.elements()) {
        for (auto it = element.attributes.cbegin(); it != element.attributes.cend(); ++it) {
            QVERIFY2(!it.key().startsWith("on") && it.key() != "style" && it.key() != "src",
                     qPrintable(it.key()));
            QVERIFY(it.key() != "href" || it.value().startsWith('#'));
        }
    }
    QString policy;
    for (const HtmlPage::Element &meta : page.all("meta")) {
        if (meta.attributes.value("http-equiv") == "Content-Security-Policy")
            policy = meta.attributes.value("content");
    }
    const QByteArray bytes = fileBytes(pagePath());
    const int start = int(bytes.indexOf("<style>")) + int(qstrlen("<style>"));
    const QByteArray style = bytes.mid(start, bytes.indexOf("</style>") - start);
    const QString hash = QCryptographicHash::hash(style, QCryptographicHash::Sha256).toBase64();
    QCOMPARE(policy,
             "default-src 'none'; style-src 'sha256-" + hash + "'; base-uri 'none'; form-action 'none'");
    QVERIFY(style.contains("--attention: #ff7f7f;"));
    QVERIFY(style.contains("--within-limits: #bef7be;"));
    QVERIFY(!style.contains("url(") && !style.contains("@import"));
}

void TestToolReport::hostileNamesStayText_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("markup") << "<script>alert(1)</script>";
    QTest::newRow("end of everything") << "</title></style></svg></td></table><img src=x onerror=alert(1)>";
    QTest::newRow("quotes") << "\" onload=\"alert(1)\" x='";
    QTest::newRow("line feeds") << "a\r\nb\nc\td";
    QTest::newRow("format") << "%s %1 %n %%";
    QTest::newRow("template") << "{{TITLE}} {{#CAR}} {{%AUTOESCAPE context=\"MANUAL\"}}";
    QTest::newRow("entities") << "&lt;b&gt; &amp; &#60;script&#62;";
    QTest::newRow("emoji") << "👩‍🔧🏁";
    QTest::newRow("escape") << "\033[2J\a";
    QTest::newRow("10,000 letters") << QString(10000, QChar(0x416));
}

void TestToolReport::hostileNamesStayText()
{
    QFETCH(QString, name);
    const auto database = createDatabase();
    const auto pageWith = [&](const QString &text) {
        for (const char *table : {"cars", "service_operations", "service_reglament", "maintainance"})
            database->exec(QString("DELETE FROM ") + table);
        const QDateTime now = QDateTime::currentDateTime();
        database->addCar(1, text, text);
        for (int operation = 1; operation <= 2; ++operation) {
            database->exec("INSERT INTO service_operations VALUES (?, ?)", {operation, text});
            database->addLimit(text, operation, 0, 0, 2);
            database->addRecord(1, operation, utc(now.addSecs(-operation)), operation - 1, text);
        }
        database->addRecord(1, -1, utc(now), 0, text);
        database->exec("UPDATE maintainance SET person_name = ?", {text});
        return report();
    };
    const HtmlPage page = pageWith(name);
    const HtmlPage harmless = pageWith("name");
    QCOMPARE(page.errors(), 0);
    const auto structure = [](const HtmlPage &of) {
        QStringList tags;
        for (const HtmlPage::Element &element : of.elements())
            tags.append(element.tag + ' ' + QString::number(element.attributes.size()));
        return tags;
    };
    QCOMPARE(structure(page), structure(harmless));
    QVERIFY(page.all("script").isEmpty() && page.all("img").isEmpty());

    const QString shown = TextWidth::elided(TextWidth::printable(name), 60);
    QCOMPARE(page.all("caption").first().text, shown);
    QVERIFY(page.text("kart-1").startsWith(TextWidth::elided("Kart " + TextWidth::printable(name), 60)));
    QVERIFY(fileBytes(pagePath()).size() < 100000);
}

void TestToolReport::thereMayBeNoRows()
{
    createDatabase();
    const HtmlPage page = report();
    QCOMPARE(page.errors(), 0);
    QCOMPARE(page.text("count-karts"), QString("0"));
    for (const char *sentence : {"There are no karts.", "Nothing is due, and nothing will be soon.",
                                 "No work was recorded in these weeks.", "Nothing is open."}) {
        QVERIFY2(page.all("main").first().text.contains(sentence), sentence);
    }
    const QString russian = report({"--lang", "ru"}).all("main").first().text;
    QVERIFY2(russian.contains("Картов нет."), qPrintable(russian));
    QCOMPARE(report({"--lang", "ru"}).all("html").first().attributes.value("lang"), QString("ru"));
}

void TestToolReport::theClockDecidesTheDays()
{
    Wording::use(Wording::English);
    Report content;
    content.now = QDateTime(QDate(2026, 12, 30), QTime(23, 59), Qt::LocalTime); // a Wednesday
    content.weeks = 2;
    ForecastRow row;
    row.due.carId = 1;
    row.due.carNumber = "7";
    row.due.opId = 1;
    row.due.operation = "Chain";
    row.due.limits.laps = 10;
    row.due.isRecorded = true;
    for (const QDate &day : {QDate(2026, 12, 31), QDate(2027, 1, 10), QDate(2027, 1, 11)}) {
        row.expectedDay = day;
        content.forecast.append(row);
    }
    const QByteArray bytes = ReportPage::html(content);
    QCOMPARE(ReportPage::html(content), bytes);
    const HtmlPage page(bytes);
    QStringList days;
    for (const HtmlPage::Element &cell : page.all("td", "calendar"))
        days.append(cell.text + '|' + cell.attributes.value("class"));
    QCOMPARE(days,
             QStringList({"Monday, 28 December|past", "Tuesday, 29 Dec|past", "Wednesday, 30 Dec today|today",
                          "Thursday, 31 Dec Chain 7|", "Friday, 1 January|empty", "Saturday, 2 Jan|empty",
                          "Sunday, 3 Jan|empty", "Monday, 4 Jan|empty", "Tuesday, 5 Jan|empty",
                          "Wednesday, 6 Jan|empty", "Thursday, 7 Jan|empty", "Friday, 8 Jan|empty",
                          "Saturday, 9 Jan|empty", "Sunday, 10 Jan Chain 7|"}));
    QVERIFY(page.text("forecast").contains("later 1"));
}

void TestToolReport::aPageThatCannotBeWrittenIsReported()
{
    fill(*createDatabase());
    for (const QString &output :
         QStringList {home().path() + "/none/page.html", home().path(), "/dev/full"}) {
        const Tool::Result result = Tool::run({"report", output});
        QCOMPARE(result.exitCode, 5);
        QVERIFY2(result.errors.contains(output), qPrintable(result.errors));
        QCOMPARE(result.errors.count('\n'), 1);
    }
    QVERIFY(!QFile::exists(home().path() + "/none"));
}

void TestToolReport::aDatabaseIsNeverReplaced()
{
    fill(*createDatabase());
    const QStringList before = Tool::folderState(home().databasePath());
    const Tool::Result result = Tool::run({"report", home().databasePath()});
    QCOMPARE(result.exitCode, 5);
    QVERIFY2(result.errors.contains("it is a database"), qPrintable(result.errors));
    QCOMPARE(Tool::folderState(home().databasePath()), before);
}

void TestToolReport::anInterruptedPageLeavesTheOldOne()
{
    fill(*createDatabase());
    report();
    const QStringList before = Tool::folderState(pagePath());
    QVERIFY(fileBytes(pagePath()).size() > 20000);

    QProcess cutOff; // by a file system on which the page does not fit
    cutOff.start("sh",
                 {"-c", "trap '' XFSZ; ulimit -f 4; exec \"$@\"", "sh", GARAGECTL, "report", pagePath()});
    QVERIFY(cutOff.waitForFinished());
    QCOMPARE(cutOff.exitCode(), 5);
    QCOMPARE(Tool::folderState(pagePath()), before);

    const DatabaseLock lock(home().databasePath(), DatabaseLock::Exclusive, 60000);
    QProcess killed;
    killed.start(GARAGECTL, {"report", pagePath()});
    QVERIFY(killed.waitForStarted());
    killed.kill();
    QVERIFY(killed.waitForFinished());
    QCOMPARE(Tool::folderState(pagePath()), before);
}

GARAGE_TEST_WITHOUT_WINDOWS(TestToolReport)
#include "tst_toolreport.moc"
