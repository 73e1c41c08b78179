#include "support/garagetest.h"
#include "tests/host/hostfixture.h"

#include <QComboBox>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTableView>

/// The panel of the message log.
class TestMessageLogPanel final : public GarageTest
{
    Q_OBJECT

private slots:
    void anyEventCanBeSent();
    void theLogIsFilteredAndShown();
    void eventNamesFitIntoASmallWindow();
    void logsFollowTheirNewestLine_data();
    void logsFollowTheirNewestLine();
};

void TestMessageLogPanel::anyEventCanBeSent()
{
    const HostFixture fixture = makeHostFixture();
    fixture.find<QComboBox>("eventToSendComboBox")->setEditText("my_event");
    auto *payload = fixture.find<QPlainTextEdit>("dataToSendPlainTextEdit");
    payload->setPlainText("[1]");
    QTest::keyClick(fixture.find<QComboBox>("eventToSendComboBox"), Qt::Key_Return);
    QCOMPARE(payload->toPlainText(), "[1]");
    fixture.click("sendPushButton");
    QCOMPARE(fixture.find<QLabel>("sendErrorLabel")->text(), "The data must be a JSON object");
    payload->setPlainText("{\"a\": 1");
    fixture.click("sendPushButton");
    QCOMPARE(fixture.countSent("my_event"), 0);
    QVERIFY(!fixture.find<QLabel>("sendErrorLabel")->text().isEmpty());
    payload->setPlainText("{\"a\": 1}");
    fixture.click("sendPushButton");
    QCOMPARE(fixture.lastSent("my_event").value("a").toInt(), 1);

    auto *events = fixture.find<QComboBox>("eventToSendComboBox");
    for (int index = 0; index < events->count(); ++index) {
        const QByteArray example = events->itemData(index).toString().toUtf8();
        QVERIFY2(QJsonDocument::fromJson(example).isObject(), qPrintable(events->itemText(index)));
    }
}

void TestMessageLogPanel::theLogIsFilteredAndShown()
{
    const HostFixture fixture = makeHostFixture();
    auto *table = fixture.find<QTableView>("messageLogTable");
    const int all = table->model()->rowCount();
    auto *events = fixture.find<QComboBox>("eventFilterComboBox");
    events->setCurrentText("personal_list");
    QCOMPARE(table->model()->rowCount(), 1);
    table->selectRow(0);
    QVERIFY(fixture.find<QPlainTextEdit>("messageLogDetails")
                ->toPlainText()
                .contains("\"serviceCode\": \"4001\""));
    events->setCurrentIndex(0);
    QVERIFY(table->model()->rowCount() >= all);
    fixture.find<QLineEdit>("textFilterLineEdit")->setText("кузнецов");
    QVERIFY(table->model()->rowCount() >= 1);
    QVERIFY(table->model()->rowCount() < all);
}

void TestMessageLogPanel::eventNamesFitIntoASmallWindow()
{
    const HostFixture fixture = makeHostFixture();
    auto *table = fixture.find<QTableView>("messageLogTable");
    fixture.window->tabs().setCurrentIndex(fixture.window->tabs().count() - 1);
    fixture.window->resize(900, 600);
    QCoreApplication::processEvents();
    const QString longest = "remote_service_move_to_archive";
    const int eventColumn = 3;
    QVERIFY(table->columnWidth(eventColumn) >= table->fontMetrics().horizontalAdvance(longest));
}

void TestMessageLogPanel::logsFollowTheirNewestLine_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("tab");
    QTest::newRow("messages") << "messageLogTable" << 3;
    QTest::newRow("remote side") << "remoteLogPlainTextEdit" << 2;
}

void TestMessageLogPanel::logsFollowTheirNewestLine()
{
    QFETCH(const QString, name);
    QFETCH(const int, tab);
    const HostFixture fixture = makeHostFixture();
    const auto addLines = [&] {
        for (int line = 0; line < 100; ++line) {
            fixture.host->plugin().send("run_closed");
            emit fixture.host->remote().logged(QString::number(line));
        }
    };
    QScrollBar *bar = fixture.window->findChild<QAbstractScrollArea *>(name)->verticalScrollBar();
    addLines(); // while the log is hidden
    fixture.window->tabs().setCurrentIndex(tab);
    QTRY_VERIFY(bar->maximum() > 20);
    QTRY_COMPARE(bar->value(), bar->maximum());
    addLines();
    QTRY_VERIFY(bar->maximum() > 120);
    QTRY_COMPARE(bar->value(), bar->maximum());
    bar->setValue(40); // as the user does
    const int before = bar->maximum();
    addLines();
    QTRY_VERIFY(bar->maximum() > before);
    QCOMPARE(bar->value(), 40);
}

GARAGE_TEST(TestMessageLogPanel)
#include "tst_messagelogpanel.moc"
