#include "support/garagetest.h"
#include "support/userinput.h"
#include "tests/host/hostfixture.h"

#include "host/app/hostsettingsdialog.h"
#include "host/database/datafolder.h"
#include "host/database/hostdatabase.h"
#include "host/sessions/windowsession.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QToolBar>

#include <cmath>

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
    void theToolBarIsOperatedByKeys_data();
    void theToolBarIsOperatedByKeys();
    void itStartsWithTheGarageShown();
    void noticesAreLegibleOnEveryPalette_data();
    void noticesAreLegibleOnEveryPalette();
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

void TestHostWindow::theToolBarIsOperatedByKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifier");
    QTest::addColumn<bool>("opensGarage");
    QTest::newRow("F2") << int(Qt::Key_F2) << int(Qt::NoModifier) << true;
    QTest::newRow("Alt and the first letter") << 0x41f << int(Qt::AltModifier) << true; // of "Подставной"
    QTest::newRow("F3") << int(Qt::Key_F3) << int(Qt::NoModifier) << false;
    QTest::newRow("Alt+S") << int(Qt::Key_S) << int(Qt::AltModifier) << false;
}

void TestHostWindow::theToolBarIsOperatedByKeys()
{
    QFETCH(const int, key);
    QFETCH(const int, modifier);
    QFETCH(const bool, opensGarage);
    const HostFixture fixture = makeHostFixture();
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    QTest::sendKeyEvent(QTest::Click, fixture.window.get(), Qt::Key(key), QString(),
                        Qt::KeyboardModifiers(modifier)); // keyClick() knows ASCII only
    QTRY_COMPARE(fixture.window->tabs().currentWidget()->objectName() == "fakeWindow", opensGarage);
    const auto settingsAreOpen = [&] {
        const auto *dialog = fixture.find<HostSettingsDialog>("hostSettingsDialog");
        return dialog && dialog->isVisible();
    };
    QTRY_COMPARE(settingsAreOpen(), !opensGarage);
}

void TestHostWindow::itStartsWithTheGarageShown()
{
    const DataFolder documents = DataFolder::userDocuments();
    QVERIFY(HostDatabase::prepare(documents));
    DemoHost host(documents, 1);
    QVERIFY(host.plugin().load(FAKE_PLUGIN));
    WindowSession session(host, documents);
    session.start();
    const QWidgetList widgets = QApplication::allWidgets();
    QVERIFY(std::any_of(widgets.begin(), widgets.end(), [](const QWidget *widget) {
        return widget->objectName() == "fakeWindow" && widget->isVisible();
    }));
}

void TestHostWindow::noticesAreLegibleOnEveryPalette_data()
{
    QTest::addColumn<QColor>("background");
    QTest::addColumn<QColor>("text");
    QTest::newRow("light") << QColor(239, 239, 239) << QColor(Qt::black);
    QTest::newRow("dark") << QColor(40, 40, 40) << QColor(Qt::white);
}

/// The contrast is that of the Web Content Accessibility Guidelines.
void TestHostWindow::noticesAreLegibleOnEveryPalette()
{
    QFETCH(const QColor, background);
    QFETCH(const QColor, text);
    const HostFixture fixture = makeHostFixture();
    QPalette palette = fixture.window->palette();
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base})
        palette.setColor(role, background);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text})
        palette.setColor(role, text);
    fixture.window->setPalette(palette);
    const auto luminance = [](const QColor &colour) {
        const auto linear = [](double part) {
            return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
            + 0.0722 * linear(colour.blueF());
    };
    for (const char *name : {"writeNoticeLabel", "archiveCheckLabel", "sendErrorLabel", "trackErrorLabel"}) {
        const auto *label = fixture.find<QLabel>(name);
        const double one = luminance(label->palette().color(label->foregroundRole())) + 0.05;
        const double other = luminance(label->palette().color(label->backgroundRole())) + 0.05;
        QVERIFY2(std::max(one, other) / std::min(one, other) >= 4.5, name);
    }
}

void TestHostWindow::buttonsWaitForASelection()
{
    const HostFixture fixture = makeHostFixture();
    for (const char *name : {"hostCarsTableViewRemove", "remoteDonePushButton", "copyPushButton"})
        QVERIFY2(!fixture.find<QPushButton>(name)->isEnabled(), name);
    fixture.find<QTableView>("hostCarsTableView")->selectRow(2);
    auto *remove = fixture.find<QPushButton>("hostCarsTableViewRemove");
    QVERIFY(remove->isEnabled());
    onNextDialog(QDialogButtonBox::Yes);
    fixture.click("hostCarsTableViewRemove");
    QTRY_VERIFY(!remove->isEnabled());

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
