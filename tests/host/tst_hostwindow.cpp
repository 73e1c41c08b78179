#include "support/garagetest.h"
#include "tests/host/hostfixture.h"

#include "host/app/hostsettingsdialog.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QToolBar>

/// The host's window: banner, tabs, settings dialog.
class TestHostWindow final : public GarageTest
{
    Q_OBJECT

private slots:
    void theBannerNamesTheFile();
    void thePluginsTabIsHiddenNotDestroyed();
    void thePluginsWindowOutlivesTheHosts();
    void addressesThatAreNoneAreIgnored();
    void settingsPagesAreShownAndDetached();
    void buttonsWaitForASelection();
    void theSettingsAreNoLargerThanTheWindow();
    void closingTheWindowIsSignalled();

private:
    static void trigger(const HostFixture &fixture, const char *action);
};

/// Clicks the tool button of the action.
void TestHostWindow::trigger(const HostFixture &fixture, const char *action)
{
    auto *bar = fixture.window->findChild<QToolBar *>();
    QTest::mouseClick(bar->widgetForAction(fixture.find<QAction>(action)), Qt::LeftButton);
}

void TestHostWindow::theBannerNamesTheFile()
{
    const HostFixture fixture = makeHostFixture();
    QVERIFY(fixture.find<QLabel>("bannerLabel")->text().contains(home().databasePath()));
    QVERIFY(fixture.find<QLabel>("bannerLabel")->text().contains("real documents"));
}

void TestHostWindow::thePluginsTabIsHiddenNotDestroyed()
{
    const HostFixture fixture = makeHostFixture();
    QTabWidget &tabs = fixture.window->tabs();
    const int ownTabs = tabs.count();
    trigger(fixture, "openGarageAction");
    QCOMPARE(tabs.count(), ownTabs + 1);
    const QPointer<QWidget> garage = tabs.currentWidget();
    QCOMPARE(garage->objectName(), "fakeWindow");
    QVERIFY(garage->isVisible());
    QCOMPARE(tabs.tabText(0), "Подставной");

    trigger(fixture, "openGarageAction");
    QCOMPARE(tabs.count(), ownTabs + 1);

    const QJsonObject close {{"tabWidget", double(reinterpret_cast<qlonglong>(garage.data()))},
                             {"onlyHide", true}};
    fixture.host->plugin().send("say", {{"event", "close_tab"}, {"data", close}});
    QCOMPARE(tabs.count(), ownTabs);
    QVERIFY(garage);
    QVERIFY(!garage->isVisible());

    trigger(fixture, "openGarageAction");
    QCOMPARE(tabs.currentWidget(), garage.data());
    QVERIFY(garage->isVisible());
}

void TestHostWindow::thePluginsWindowOutlivesTheHosts()
{
    HostFixture fixture = makeHostFixture();
    trigger(fixture, "openGarageAction");
    const QPointer<QWidget> garage = fixture.window->tabs().currentWidget();
    fixture.window.reset();
    QVERIFY(garage);
    QCOMPARE(garage->parentWidget(), nullptr);
    fixture.host.reset();
    QVERIFY(!garage);
}

void TestHostWindow::addressesThatAreNoneAreIgnored()
{
    const HostFixture fixture = makeHostFixture();
    const int ownTabs = fixture.window->tabs().count();
    for (const QJsonValue &address : {QJsonValue(), QJsonValue(0), QJsonValue("12")}) {
        for (const char *event : {"insert_tab", "close_tab"})
            fixture.host->plugin().send(
                "say", {{"event", QLatin1String(event)}, {"data", QJsonObject {{"tabWidget", address}}}});
    }
    QCOMPARE(fixture.window->tabs().count(), ownTabs);
}

void TestHostWindow::settingsPagesAreShownAndDetached()
{
    const HostFixture fixture = makeHostFixture();
    trigger(fixture, "openSettingsAction");
    QPointer<HostSettingsDialog> dialog = fixture.find<HostSettingsDialog>("hostSettingsDialog");
    QVERIFY(dialog);
    QCOMPARE(dialog->pageCount(), 1);
    const QPointer<QWidget> page = dialog->findChild<QLabel *>("fakePage");
    QVERIFY(page && page->isVisible());
    dialog->close();
    QTRY_VERIFY(!dialog);
    QVERIFY(page);
    QCOMPARE(page->parentWidget(), nullptr);
    QVERIFY(!page->isVisible());

    trigger(fixture, "openSettingsAction");
    dialog = fixture.find<HostSettingsDialog>("hostSettingsDialog");
    QVERIFY(dialog && dialog->isAncestorOf(page));
}

void TestHostWindow::buttonsWaitForASelection()
{
    const HostFixture fixture = makeHostFixture();
    for (const char *name : {"hostCarsTableViewRemove", "remoteDonePushButton", "copyPushButton"})
        QVERIFY2(!fixture.find<QPushButton>(name)->isEnabled(), name);
    fixture.find<QTableView>("hostCarsTableView")->selectRow(2);
    auto *remove = fixture.find<QPushButton>("hostCarsTableViewRemove");
    QVERIFY(remove->isEnabled());
    fixture.click("hostCarsTableViewRemove");
    QVERIFY(!remove->isEnabled());

    auto *log = fixture.find<QTableView>("messageLogTable");
    log->selectRow(0);
    QVERIFY(fixture.find<QPushButton>("copyPushButton")->isEnabled());
    fixture.host->messageLog().clear();
    QTRY_VERIFY(!fixture.find<QPushButton>("copyPushButton")->isEnabled());
}

void TestHostWindow::theSettingsAreNoLargerThanTheWindow()
{
    const HostFixture fixture = makeHostFixture();
    fixture.window->resize(850, 560);
    trigger(fixture, "openSettingsAction");
    const auto *dialog = fixture.find<HostSettingsDialog>("hostSettingsDialog");
    QVERIFY(dialog->width() <= fixture.window->width());
    QVERIFY(dialog->height() <= fixture.window->height());
}

void TestHostWindow::closingTheWindowIsSignalled()
{
    const HostFixture fixture = makeHostFixture();
    QSignalSpy closed(fixture.window.get(), &HostWindow::closed);
    trigger(fixture, "openSettingsAction");
    fixture.window->close();
    QCOMPARE(closed.count(), 1);
}

GARAGE_TEST(TestHostWindow)
#include "tst_hostwindow.moc"
