#include "support/garagetest.h"

#include "host/app/demohost.h"
#include "host/app/hostsettingsdialog.h"
#include "host/app/hostwindow.h"
#include "host/database/datafolder.h"
#include "host/database/hostdatabase.h"
#include "host/sample/sampledata.h"

#include <QComboBox>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableView>
#include <QToolBar>
#include <QToolButton>

#include <memory>

/// The host's window around a plug-in that only echoes.
class TestHostWindow final : public GarageTest
{
    Q_OBJECT

private slots:
    void theBannerNamesTheFile();
    void thePluginsTabIsHiddenNotDestroyed();
    void thePluginsWindowOutlivesTheHosts();
    void addressesThatAreNoneAreIgnored();
    void settingsPagesAreCollectedAndGivenBack();
    void aRunRecordedByHandReachesTheFile();
    void theTrackKeepsItsComplaintAndNumbersWhileKartsDrive();
    void editedCarsAreStoredAndAnnounced();
    void carsAndPeopleComeAndGo();
    void buttonsWaitForASelection();
    void aLockedFileKeepsItsCarsAndSaysSo();
    void anyEventCanBeSentByHand();
    void theJournalIsFilteredAndShown();
    void theJournalNamesEventsInASmallWindow();
    void theSettingsAreNoLargerThanTheWindow();
    void closingTheWindowIsTold();

private:
    /// A host on sample data, its window shown.
    struct Stage
    {
        std::unique_ptr<DemoHost> host;
        std::unique_ptr<HostWindow> window;

        template<typename Widget> Widget *find(const char *name) const
        {
            return window->findChild<Widget *>(QLatin1String(name));
        }
        void click(const char *button) const { find<QPushButton>(button)->click(); }
        /// Data of the last message of that name to the plug-in.
        QJsonObject lastTold(const QString &event) const;
        int countTold(const QString &event) const;
    };

    Stage makeStage();
    static void trigger(const Stage &stage, const char *action);
};

QJsonObject TestHostWindow::Stage::lastTold(const QString &event) const
{
    const MessageLogModel &journal = host->messageLog();
    for (int row = journal.rowCount() - 1; row >= 0; --row) {
        if (journal.entry(row).toPlugin && journal.entry(row).event == event)
            return journal.entry(row).data();
    }
    return {};
}

int TestHostWindow::Stage::countTold(const QString &event) const
{
    int count = 0;
    const MessageLogModel &journal = host->messageLog();
    for (int row = 0; row < journal.rowCount(); ++row)
        count += journal.entry(row).toPlugin && journal.entry(row).event == event ? 1 : 0;
    return count;
}

TestHostWindow::Stage TestHostWindow::makeStage()
{
    const DataFolder documents = DataFolder::userDocuments();
    Stage stage;
    if (!HostDatabase::prepare(documents))
        qFatal("no database");
    {
        HostConnection connection(documents.databasePath());
        generateSampleData(connection, SampleKind::Sample, 1, QDateTime::currentDateTimeUtc(),
                           [](int) { return true; });
    }
    stage.host = std::make_unique<DemoHost>(documents, 1);
    if (!stage.host->plugin().load(FAKE_PLUGIN))
        qFatal("no plug-in");
    stage.window = std::make_unique<HostWindow>(*stage.host, documents);
    stage.window->start();
    return stage;
}

/// Clicks the tool button of the action.
void TestHostWindow::trigger(const Stage &stage, const char *action)
{
    auto *bar = stage.window->findChild<QToolBar *>();
    QTest::mouseClick(bar->widgetForAction(stage.find<QAction>(action)), Qt::LeftButton);
}

void TestHostWindow::theBannerNamesTheFile()
{
    const Stage stage = makeStage();
    QVERIFY(stage.find<QLabel>("bannerLabel")->text().contains(home().databasePath()));
    QVERIFY(stage.find<QLabel>("bannerLabel")->text().contains("real documents"));
}

void TestHostWindow::thePluginsTabIsHiddenNotDestroyed()
{
    const Stage stage = makeStage();
    QTabWidget &tabs = stage.window->tabs();
    const int ownTabs = tabs.count();
    trigger(stage, "openGarageAction");
    QCOMPARE(tabs.count(), ownTabs + 1);
    const QPointer<QWidget> garage = tabs.currentWidget();
    QCOMPARE(garage->objectName(), "fakeWindow");
    QVERIFY(garage->isVisible());
    QCOMPARE(tabs.tabText(0), "Подставной");

    trigger(stage, "openGarageAction");
    QCOMPARE(tabs.count(), ownTabs + 1);

    const QJsonObject close {{"tabWidget", double(reinterpret_cast<qlonglong>(garage.data()))},
                             {"onlyHide", true}};
    stage.host->plugin().send("say", {{"event", "close_tab"}, {"data", close}});
    QCOMPARE(tabs.count(), ownTabs);
    QVERIFY(garage);
    QVERIFY(!garage->isVisible());

    trigger(stage, "openGarageAction");
    QCOMPARE(tabs.currentWidget(), garage.data());
    QVERIFY(garage->isVisible());
}

void TestHostWindow::thePluginsWindowOutlivesTheHosts()
{
    Stage stage = makeStage();
    trigger(stage, "openGarageAction");
    const QPointer<QWidget> garage = stage.window->tabs().currentWidget();
    stage.window.reset();
    QVERIFY(garage);
    QCOMPARE(garage->parentWidget(), nullptr);
    stage.host.reset();
    QVERIFY(!garage);
}

void TestHostWindow::addressesThatAreNoneAreIgnored()
{
    const Stage stage = makeStage();
    const int ownTabs = stage.window->tabs().count();
    for (const QJsonValue &address : {QJsonValue(), QJsonValue(0), QJsonValue("12")}) {
        for (const char *event : {"insert_tab", "close_tab"})
            stage.host->plugin().send(
                "say", {{"event", QLatin1String(event)}, {"data", QJsonObject {{"tabWidget", address}}}});
    }
    QCOMPARE(stage.window->tabs().count(), ownTabs);
}

void TestHostWindow::settingsPagesAreCollectedAndGivenBack()
{
    const Stage stage = makeStage();
    trigger(stage, "openSettingsAction");
    QPointer<HostSettingsDialog> dialog = stage.find<HostSettingsDialog>("hostSettingsDialog");
    QVERIFY(dialog);
    QCOMPARE(dialog->pageCount(), 1);
    const QPointer<QWidget> page = dialog->findChild<QLabel *>("fakePage");
    QVERIFY(page && page->isVisible());
    dialog->close();
    QTRY_VERIFY(!dialog);
    QVERIFY(page);
    QCOMPARE(page->parentWidget(), nullptr);
    QVERIFY(!page->isVisible());

    trigger(stage, "openSettingsAction");
    dialog = stage.find<HostSettingsDialog>("hostSettingsDialog");
    QVERIFY(dialog && dialog->isAncestorOf(page));
}

void TestHostWindow::aRunRecordedByHandReachesTheFile()
{
    const Stage stage = makeStage();
    const TestDatabase database(home().databasePath(), false);
    const int before = database.value("SELECT count(*) FROM laps").toInt();
    stage.click("recordRunPushButton");
    auto *cars = stage.find<QListWidget>("runCarsListWidget");
    cars->item(0)->setCheckState(Qt::Checked);
    cars->item(2)->setCheckState(Qt::Checked);
    stage.find<QSpinBox>("lapsSpinBox")->setValue(9);
    const int told = stage.countTold("run_saved_to_db");
    stage.click("recordRunPushButton");
    QTRY_COMPARE(stage.countTold("run_saved_to_db"), told + 1);
    QCOMPARE(database.value("SELECT count(*) FROM laps").toInt(), before + 18);
}

void TestHostWindow::theTrackKeepsItsComplaintAndNumbersWhileKartsDrive()
{
    const Stage stage = makeStage();
    const auto *complaint = stage.find<QLabel>("trackErrorLabel");
    const auto *onTrack = stage.find<QLabel>("onTrackLabel");
    Track &track = stage.host->track();
    track.setSpeed(1);
    track.setLive(true);
    QTRY_VERIFY(onTrack->text().contains(QRegularExpression("no\\..\\d")));
    QVector<int> everyCar;
    for (const HostCar &car : stage.host->fleet().cars().list())
        everyCar.append(car.id);
    QVERIFY(stage.host->fleet().cars().setAvailable(everyCar, false));
    stage.host->fleet().announceCars();
    emit track.failed("locked");
    emit track.changed();
    const QRegularExpression id("no\\..\\d{3}"); // ids are from 101, numbers to 24
    QVERIFY2(!onTrack->text().contains(id), qPrintable(onTrack->text()));
    QVERIFY(complaint->text().contains("locked"));
    emit track.lapsSaved();
    QVERIFY(complaint->text().isEmpty());
}

void TestHostWindow::editedCarsAreStoredAndAnnounced()
{
    const Stage stage = makeStage();
    QAbstractItemModel *model = stage.find<QTableView>("hostCarsTableView")->model();
    model->setData(model->index(0, 0), "77");
    QCoreApplication::processEvents();
    model->setData(model->index(1, 2), Qt::Unchecked, Qt::CheckStateRole);
    QTRY_VERIFY(!stage.lastTold("cars_list_changed")
                     .value("cars")
                     .toArray()
                     .at(1)
                     .toObject()
                     .value("available_for_runs")
                     .toBool(true));
    const QJsonArray cars = stage.lastTold("cars_list_changed").value("cars").toArray();
    QCOMPARE(cars.at(0).toObject().value("num").toString(), "77");
    QVERIFY(!cars.at(0).toObject().value("car_guid").toString().isEmpty());
}

void TestHostWindow::carsAndPeopleComeAndGo()
{
    const Stage stage = makeStage();
    const auto cars = [&] { return stage.lastTold("cars_list_changed").value("cars").toArray().size(); };
    const auto people = [&] {
        return stage.lastTold("personal_list").value("personalList").toArray().size();
    };
    stage.click("hostCarsTableViewAdd");
    QCOMPARE(cars(), 25);
    stage.click("hostCarsTableViewRemove");
    QCOMPARE(cars(), 24);
    auto *carsView = stage.find<QTableView>("hostCarsTableView");
    carsView->selectRow(2);
    stage.click("hostCarsTableViewRemove");
    stage.click("hostCarsTableViewAdd");
    QCOMPARE(carsView->model()->index(23, 0).data().toString(), "25"); // 24 is another kart's
    stage.click("hostPeopleTableViewAdd");
    QCOMPARE(people(), 11);
    auto *view = stage.find<QTableView>("hostPeopleTableView");
    view->selectRow(0);
    stage.click("hostPeopleTableViewRemove");
    QCOMPARE(people(), 10);
    view->model()->setData(view->model()->index(0, 3), "9999");
    QTRY_COMPARE(stage.lastTold("personal_list")
                     .value("personalList")
                     .toArray()
                     .first()
                     .toObject()
                     .value("serviceCode")
                     .toString(),
                 "9999");
}

void TestHostWindow::buttonsWaitForASelection()
{
    const Stage stage = makeStage();
    for (const char *name : {"hostCarsTableViewRemove", "remoteDonePushButton", "copyPushButton"})
        QVERIFY2(!stage.find<QPushButton>(name)->isEnabled(), name);
    stage.find<QTableView>("hostCarsTableView")->selectRow(2);
    auto *remove = stage.find<QPushButton>("hostCarsTableViewRemove");
    QVERIFY(remove->isEnabled());
    stage.click("hostCarsTableViewRemove");
    QVERIFY(!remove->isEnabled());

    auto *journal = stage.find<QTableView>("messageLogTable");
    journal->selectRow(0);
    QVERIFY(stage.find<QPushButton>("copyPushButton")->isEnabled());
    stage.host->messageLog().clear();
    QTRY_VERIFY(!stage.find<QPushButton>("copyPushButton")->isEnabled());
}

void TestHostWindow::aLockedFileKeepsItsCarsAndSaysSo()
{
    const Stage stage = makeStage();
    const auto *complaint = stage.find<QLabel>("fleetErrorLabel");
    const auto *cars = stage.find<QTableView>("hostCarsTableView")->model();
    const TestDatabase database(home().databasePath(), false);
    database.exec("BEGIN EXCLUSIVE");
    stage.click("hostCarsTableViewAdd");
    QVERIFY2(complaint->text().contains("locked"), qPrintable(complaint->text()));
    stage.host->fleet().announceCars();
    QCOMPARE(cars->rowCount(), 24);
    QCOMPARE(stage.lastTold("cars_list_changed").value("cars").toArray().size(), 24);
    database.exec("COMMIT");
    stage.click("hostCarsTableViewAdd");
    QCOMPARE(cars->rowCount(), 25);
    QVERIFY(complaint->isHidden());
}

void TestHostWindow::anyEventCanBeSentByHand()
{
    const Stage stage = makeStage();
    stage.find<QComboBox>("eventToSendComboBox")->setEditText("my_event");
    auto *payload = stage.find<QPlainTextEdit>("dataToSendPlainTextEdit");
    payload->setPlainText("[1]");
    QTest::keyClick(stage.find<QComboBox>("eventToSendComboBox"), Qt::Key_Return);
    QCOMPARE(payload->toPlainText(), "[1]");
    stage.click("sendPushButton");
    QCOMPARE(stage.find<QLabel>("sendErrorLabel")->text(), "The data must be a JSON object");
    payload->setPlainText("{\"a\": 1");
    stage.click("sendPushButton");
    QCOMPARE(stage.countTold("my_event"), 0);
    QVERIFY(!stage.find<QLabel>("sendErrorLabel")->text().isEmpty());
    payload->setPlainText("{\"a\": 1}");
    stage.click("sendPushButton");
    QCOMPARE(stage.lastTold("my_event").value("a").toInt(), 1);

    auto *events = stage.find<QComboBox>("eventToSendComboBox");
    for (int index = 0; index < events->count(); ++index) {
        const QByteArray example = events->itemData(index).toString().toUtf8();
        QVERIFY2(QJsonDocument::fromJson(example).isObject(), qPrintable(events->itemText(index)));
    }
}

void TestHostWindow::theJournalIsFilteredAndShown()
{
    const Stage stage = makeStage();
    auto *table = stage.find<QTableView>("messageLogTable");
    const int all = table->model()->rowCount();
    auto *events = stage.find<QComboBox>("eventFilterComboBox");
    events->setCurrentText("personal_list");
    QCOMPARE(table->model()->rowCount(), 1);
    table->selectRow(0);
    QVERIFY(
        stage.find<QPlainTextEdit>("messageLogDetails")->toPlainText().contains("\"serviceCode\": \"4001\""));
    events->setCurrentIndex(0);
    QVERIFY(table->model()->rowCount() >= all);
    stage.find<QLineEdit>("textFilterLineEdit")->setText("кузнецов");
    QVERIFY(table->model()->rowCount() >= 1);
    QVERIFY(table->model()->rowCount() < all);
}

void TestHostWindow::theJournalNamesEventsInASmallWindow()
{
    const Stage stage = makeStage();
    auto *table = stage.find<QTableView>("messageLogTable");
    stage.window->tabs().setCurrentIndex(stage.window->tabs().count() - 1);
    stage.window->resize(900, 600);
    QCoreApplication::processEvents();
    const QString longest = "remote_service_move_to_archive";
    const int eventColumn = 3;
    QVERIFY(table->columnWidth(eventColumn) >= table->fontMetrics().horizontalAdvance(longest));
}

void TestHostWindow::theSettingsAreNoLargerThanTheWindow()
{
    const Stage stage = makeStage();
    stage.window->resize(850, 560);
    trigger(stage, "openSettingsAction");
    const auto *dialog = stage.find<HostSettingsDialog>("hostSettingsDialog");
    QVERIFY(dialog->width() <= stage.window->width());
    QVERIFY(dialog->height() <= stage.window->height());
}

void TestHostWindow::closingTheWindowIsTold()
{
    const Stage stage = makeStage();
    QSignalSpy closed(stage.window.get(), &HostWindow::closed);
    trigger(stage, "openSettingsAction");
    stage.window->close();
    QCOMPARE(closed.count(), 1);
}

GARAGE_TEST(TestHostWindow)
#include "tst_hostwindow.moc"
