#include "settingspagetest.h"

#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

void pressKey(const QDialog &dialog, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QTest::keyClick(dialog.focusWidget(), key, modifiers);
}

} // namespace

/// The settings page, used by keys alone.
class TestSettingsKeys : public SettingsPageTest
{
    Q_OBJECT
private slots:
    void tabGoesThroughBothTables();
    void anOperationIsRenamed();
    void anOperationIsAddedAndRemovedWithTheMenuKey();
    void theArrowsReachEveryCellOfTheSchedule();
    void aKeyAsksForTheLimits_data();
    void aKeyAsksForTheLimits();
    void limitsAreTypedAndStored();
    void noCellMeansNoLimits_data();
    void noCellMeansNoLimits();
    void aHeldKeyOpensOneDialog();
    void returnDoesNotCloseTheHostsDialog();
    void thePageMayDieUnderADialogFromAKey();

private:
    /// Presses a key where the focus of the page is. A page that a dialog covered is activated first.
    void pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const;
    /// Opens the context menu as the menu key does, and chooses the action at that place.
    void chooseFromMenu(int place) const;
    void goTo(int row, int column) const;
};

void TestSettingsKeys::pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers) const
{
    m_host->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_host.get()));
    QTest::keyClick(m_host->focusWidget(), key, modifiers);
}

void TestSettingsKeys::chooseFromMenu(int place) const
{
    auto *timer = new QTimer(qApp);
    connect(timer, &QTimer::timeout, timer, [timer, place] {
        QWidget *menu = QApplication::activePopupWidget();
        if (!menu || QGuiApplication::focusWindow() != menu->windowHandle())
            return;
        timer->stop();
        timer->deleteLater();
        for (int i = 0; i <= place; ++i)
            QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    timer->start(1);
    QWidget *widget = m_host->focusWidget();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {10, 10}, widget->mapToGlobal(QPoint(10, 10)));
    QApplication::sendEvent(widget, &event);
}

void TestSettingsKeys::goTo(int row, int column) const
{
    const auto current = [this] { return scheduleView()->currentIndex(); };
    for (int i = 0; i < 20 && current().row() != row; ++i)
        pressKey(current().row() < row ? Qt::Key_Down : Qt::Key_Up);
    for (int i = 0; i < 20 && current().column() != column; ++i)
        pressKey(current().column() < column ? Qt::Key_Right : Qt::Key_Left);
    QCOMPARE(current(), schedule()->index(row, column));
}

void TestSettingsKeys::tabGoesThroughBothTables()
{
    open();
    operationsView()->setFocus();
    pressKey(Qt::Key_Tab);
    QVERIFY(scheduleView()->hasFocus());
    pressKey(Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(operationsView()->hasFocus());
    QCOMPARE(operationsView()->accessibleName(), "Сервисные операции");
    QCOMPARE(scheduleView()->accessibleName(), "Регламент обслуживания");
}

void TestSettingsKeys::anOperationIsRenamed()
{
    open();
    operationsView()->setFocus();
    pressKey(Qt::Key_Down);
    pressKey(Qt::Key_Right);
    QCOMPARE(operationsView()->currentIndex(), operations()->index(0, 1));
    pressKey(Qt::Key_F2);
    enterName("Шины");
    QCOMPARE(storedOperations(), QStringList({"2|Шины", "5|Цепь"}));
}

void TestSettingsKeys::anOperationIsAddedAndRemovedWithTheMenuKey()
{
    open();
    operationsView()->setFocus();
    chooseFromMenu(0);
    enterName("Шины");
    QCOMPARE(storedOperations(), QStringList({"2|Масло", "5|Цепь", "6|Шины"}));
    pressKey(Qt::Key_Up);
    onNextDialog([](QDialog &dialog) {
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        ::pressKey(dialog, Qt::Key_Backtab, Qt::ShiftModifier);
        ::pressKey(dialog, Qt::Key_Return);
    });
    chooseFromMenu(1);
    QCOMPARE(storedOperations(), QStringList({"2|Масло", "6|Шины"}));
}

void TestSettingsKeys::theArrowsReachEveryCellOfTheSchedule()
{
    open();
    scheduleView()->setFocus();
    pressKey(Qt::Key_Down);
    for (int row = 0; row < schedule()->rowCount(); ++row) {
        for (int column = 0; column < schedule()->columnCount(); ++column) {
            QCOMPARE(scheduleView()->currentIndex(), schedule()->index(row, column));
            QCOMPARE(scheduleView()->selectionModel()->selectedIndexes(),
                     QModelIndexList({scheduleView()->currentIndex()}));
            pressKey(Qt::Key_Right);
        }
        pressKey(Qt::Key_Down);
        for (int column = 1; column < schedule()->columnCount(); ++column)
            pressKey(Qt::Key_Left);
    }
}

void TestSettingsKeys::aKeyAsksForTheLimits_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
    QTest::newRow("Space") << int(Qt::Key_Space);
    QTest::newRow("F2") << int(Qt::Key_F2);
}

void TestSettingsKeys::aKeyAsksForTheLimits()
{
    QFETCH(int, key);
    open();
    scheduleView()->setFocus();
    goTo(0, 2);
    QStringList seen;
    onNextDialog([&seen](QDialog &dialog) {
        seen << dialog.windowTitle() << child<QLineEdit>(dialog, "leTime")->text();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    pressKey(Qt::Key(key));
    QCOMPARE(seen, QStringList({"Лимиты наработки", "1.5"}));
    QCOMPARE(m_host->focusWidget(), scheduleView());
}

void TestSettingsKeys::limitsAreTypedAndStored()
{
    open();
    scheduleView()->setFocus();
    goTo(1, 3);
    onNextDialog([](QDialog &dialog) {
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        for (const char *text : {"2,5", "7", "9"}) {
            enterText(dialog.focusWidget(), text);
            ::pressKey(dialog, Qt::Key_Tab);
        }
        ::pressKey(dialog, Qt::Key_Return);
    });
    pressKey(Qt::Key_Return);
    QCOMPARE(storedLimits(), QStringList({"Rimo|5|9000|7|9", "SODI|2|5400|10|0"}));
}

void TestSettingsKeys::noCellMeansNoLimits_data()
{
    QTest::addColumn<int>("column");
    QTest::newRow("none") << -1;
    QTest::newRow("number") << 0;
    QTest::newRow("model") << 1;
}

void TestSettingsKeys::noCellMeansNoLimits()
{
    QFETCH(int, column);
    open();
    scheduleView()->setFocus();
    if (column >= 0)
        goTo(0, column);
    QVERIFY(scheduleView()->hasFocus());
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_F2})
        pressKey(key);
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(scheduleView()->currentIndex().isValid(), column >= 0);
}

void TestSettingsKeys::aHeldKeyOpensOneDialog()
{
    open();
    scheduleView()->setFocus();
    goTo(0, 2);
    const auto sendReturn = [this](bool isRepeated) {
        return opensDialog(
            [=] { QTest::simulateEvent(scheduleView(), true, Qt::Key_Return, {}, QString(), isRepeated); });
    };
    QVERIFY(sendReturn(false));
    QVERIFY(!sendReturn(true));
}

void TestSettingsKeys::returnDoesNotCloseTheHostsDialog()
{
    QDialog host;
    auto *layout = new QVBoxLayout(&host);
    auto *page = new GarageSettingsForm;
    auto *ok = new QPushButton("OK");
    layout->addWidget(page);
    layout->addWidget(ok);
    connect(ok, &QPushButton::clicked, &host, &QDialog::accept);
    ok->setDefault(true);
    host.show();
    QVERIFY(QTest::qWaitForWindowActive(&host));
    auto *view = child<QTreeView>(*page, "tvServiceReglament");
    view->setFocus();
    view->setCurrentIndex(view->model()->index(0, 2));
    onNextDialog([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    QTest::keyClick(view, Qt::Key_Return);
    QVERIFY(allDialogsAnswered());
    QVERIFY(host.isVisible());
}

void TestSettingsKeys::thePageMayDieUnderADialogFromAKey()
{
    open();
    scheduleView()->setFocus();
    goTo(0, 2);
    onNextDialog([this](QDialog &) { delete m_form; });
    QTest::keyPress(m_host->windowHandle(), Qt::Key_Return);
    QVERIFY(!m_form);
}

GARAGE_TEST(TestSettingsKeys)
#include "tst_settingskeys.moc"
