#include "support/contextmenu.h"
#include "support/garagetest.h"
#include "support/garagewindow.h"
#include "support/json.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeView>

namespace {

const QString everyRecord =
    "SELECT car_id,operation_id,operation_state,comment FROM maintainance ORDER BY id";

void pressKey(const QDialog &dialog, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QTest::keyClick(dialog.focusWidget(), key, modifiers);
}

/// As the window system does it: it sends no key event to the widget.
void pressMenuKey(QWidget *widget)
{
    const QPoint at = widget->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, at, widget->mapToGlobal(at));
    QApplication::sendEvent(widget, &event);
}

/// Calls the function as soon as a menu is open; it must close it.
void onNextMenu(const std::function<void(QMenu &)> &answer)
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, answer] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        // A menu that closes before it was activated would take the focus with it.
        if (!menu || QGuiApplication::focusWindow() != menu->windowHandle())
            return;
        timer->stop();
        timer->deleteLater();
        answer(*menu);
    });
    timer->start(1);
}

QStringList texts(const QMenu &menu)
{
    QStringList all;
    for (const QAction *action : menu.actions())
        all.append(action->text());
    return all;
}

} // namespace

/// The window, used by keys alone.
class TestKeyboardWalk : public DatabaseTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void tabGoesThroughEveryPlace_data();
    void tabGoesThroughEveryPlace();
    void everyPlaceHasAnAccessibleName();
    void carsBecomeAvailableAndUnavailable();
    void theArrowsReachEveryCell();
    void aKeyDoesWhatTheButtonOfTheCellDoes_data();
    void aKeyDoesWhatTheButtonOfTheCellDoes();
    void aServiceAndAComplaintAreRecorded();
    void aHeldKeyOpensOneDialog();
    void aHeldKeyRecordsNothing_data();
    void aHeldKeyRecordsNothing();
    void theFocusAloneMeansNoCar();
    void aCarThatTheFilterHidesIsNotMeant();
    void theMenuKeyOffersBothActions();
    void aRightClickOffersBothActionsForTheClickedCell_data();
    void aRightClickOffersBothActionsForTheClickedCell();
    void thereIsNoMenuWithoutACell();
    void aReloadUnderTheMenuMeansTheSameCell();
    void aCarDeletedUnderTheMenuIsNotReplaced();
    void theWindowMayDieUnderTheOpenMenu();
    void theWindowMayDieUnderADialogFromTheMenu();
    void theWindowMayDieUnderADialogFromAKey();
    void theLogIsFilteredAndARecordDeleted();
    void theCurrentCellIsMarkedWhileKeysAreUsed();

private:
    /// Presses a key where the focus of the window is. A window that a dialog covered is activated first.
    void pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    QWidget *focused() const { return m_window->form->focusWidget(); }
    void openTab(const char *page);
    /// Presses Tab until that widget has the focus; fails after a whole round.
    template<class Widget> Widget *tabTo(const char *name);
    QTreeView *table() const { return m_window->find<QTreeView>("tvMaintainanceTable"); }
    /// Makes a cell of the maintenance table current with arrow keys.
    void goTo(int row, int column);

    std::unique_ptr<GarageWindow> m_window;
};

void TestKeyboardWalk::init()
{
    DatabaseTest::init();
    database->addCar(1, "10", "Sodi");
    database->addCar(2, "20", "Sodi");
    database->addCar(3, "30", "RX");
    database->addOperation(4, "Масло");
    database->addOperation(6, "Цепь");
    database->addRecord(1, 4, "2026-03-01T10:00Z", DoneState, "первая");
    database->addRecord(3, 6, "2026-03-02T10:00Z", DoneState, "вторая");
    m_window = std::make_unique<GarageWindow>();
    m_window->form->loadCars(
        json(R"({"cars": [{"id": 1, "num": "10", "name": "Sodi", "available_for_runs": false},
        {"id": 2, "num": "20", "name": "Sodi", "available_for_runs": false},
        {"id": 3, "num": "30", "name": "RX", "available_for_runs": true}]})"));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window->form.get()));
    m_window->takeEvents();
}

void TestKeyboardWalk::cleanup()
{
    QVERIFY(allDialogsAnswered());
    if (m_window->form)
        m_window->settle();
    m_window.reset();
    DatabaseTest::cleanup();
}

void TestKeyboardWalk::pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    m_window->form->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window->form.get()));
    QTest::keyClick(focused(), key, modifiers);
}

void TestKeyboardWalk::openTab(const char *page)
{
    auto *tabs = m_window->find<QTabWidget>("tabWidget");
    tabs->tabBar()->setFocus();
    const int index = tabs->indexOf(m_window->find<QWidget>(page));
    for (int i = 0; i < 3 && tabs->currentIndex() != index; ++i)
        pressKey(tabs->currentIndex() < index ? Qt::Key_Right : Qt::Key_Left);
}

template<class Widget> Widget *TestKeyboardWalk::tabTo(const char *name)
{
    auto *widget = m_window->find<Widget>(name);
    for (int i = 0; i < 20 && !widget->hasFocus(); ++i)
        pressKey(Qt::Key_Tab);
    if (!widget->hasFocus())
        qFatal("Tab does not reach %s", name);
    return widget;
}

void TestKeyboardWalk::goTo(int row, int column)
{
    for (int i = 0; i < 20 && table()->currentIndex().row() != row; ++i)
        pressKey(table()->currentIndex().row() < row ? Qt::Key_Down : Qt::Key_Up);
    for (int i = 0; i < 20 && table()->currentIndex().column() != column; ++i)
        pressKey(table()->currentIndex().column() < column ? Qt::Key_Right : Qt::Key_Left);
    QCOMPARE(table()->currentIndex(), table()->model()->index(row, column));
}

void TestKeyboardWalk::tabGoesThroughEveryPlace_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QStringList>("places");
    QTest::newRow("cars in work") << QByteArray("tabAvailableCars")
                                  << QStringList({"tvAllCars", "pbSetAvailable", "pbRemoveAvailable",
                                                  "tvAvailableCars", "pbCloseGarage_3"});
    QTest::newRow("maintenance") << QByteArray("tabCars")
                                 << QStringList({"cbSortKind", "pbReloadMaintainance", "cbFilterModels",
                                                 "cbFilterServiceState", "pushButton", "tvMaintainanceTable",
                                                 "pbCloseGarage"});
    QTest::newRow("log") << QByteArray("tabServiceLog")
                         << QStringList({"pbReloadLog", "cbLogFilterModels", "leLogFilterNum",
                                         "cbLogFilterOperation", "pushButton_2", "tvServiceLog",
                                         "pbCloseGarage_2"});
}

void TestKeyboardWalk::tabGoesThroughEveryPlace()
{
    QFETCH(QByteArray, page);
    QFETCH(QStringList, places);
    openTab(page.constData());
    const QString tabBar = focused()->objectName();
    const auto walk = [this](Qt::Key key, Qt::KeyboardModifiers modifiers, int steps) {
        QStringList seen;
        for (int i = 0; i < steps; ++i) {
            pressKey(key, modifiers);
            seen.append(focused()->objectName());
        }
        return seen;
    };
    QStringList round = places;
    round.append(tabBar);
    QCOMPARE(walk(Qt::Key_Tab, {}, int(round.size())), round);
    std::reverse(places.begin(), places.end());
    QCOMPARE(walk(Qt::Key_Backtab, Qt::ShiftModifier, int(places.size())), places);
}

void TestKeyboardWalk::everyPlaceHasAnAccessibleName()
{
    for (const QWidget *widget : m_window->form->findChildren<QWidget *>()) {
        const bool isNamedByItsText = widget->inherits("QTabBar") || widget->inherits("QTabWidget");
        if (widget->focusPolicy() == Qt::NoFocus || isNamedByItsText || widget->objectName().isEmpty()
            || widget->objectName().startsWith("qt_"))
            continue;
        const QAccessibleInterface *accessible =
            QAccessible::queryAccessibleInterface(const_cast<QWidget *>(widget));
        QVERIFY2(accessible && !accessible->text(QAccessible::Name).isEmpty(),
                 qPrintable(widget->objectName()));
    }
}

void TestKeyboardWalk::carsBecomeAvailableAndUnavailable()
{
    openTab("tabAvailableCars");
    tabTo<QTreeView>("tvAllCars");
    pressKey(Qt::Key_Home);
    pressKey(Qt::Key_Down, Qt::ShiftModifier);
    tabTo<QPushButton>("pbSetAvailable");
    pressKey(Qt::Key_Space);
    QCOMPARE(m_window->eventNames(), QStringList({"update_cars", "remote_control_answer"}));
    QCOMPARE(m_window->takeEvents().first().data.value("carsIdsList").toArray().size(), 2);

    tabTo<QTreeView>("tvAvailableCars");
    pressKey(Qt::Key_Space);
    for (int i = 0; i < 2; ++i)
        pressKey(Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(m_window->find<QPushButton>("pbSetAvailable")->hasFocus());
    tabTo<QPushButton>("pbRemoveAvailable");
    pressKey(Qt::Key_Space);
    QCOMPARE(m_window->events.first().data.value("carsIdsList").toArray(), QJsonArray({3}));
    QCOMPARE(m_window->events.first().data.value("available").toInt(), 0);
}

void TestKeyboardWalk::theArrowsReachEveryCell()
{
    tabTo<QTreeView>("tvMaintainanceTable");
    table()->header()->moveSection(4, 3); // the order of the columns as shown counts
    pressKey(Qt::Key_Down);
    QStringList seen;
    for (int row = 0; row < table()->model()->rowCount(); ++row) {
        for (int i = 0; i < table()->model()->columnCount(); ++i) {
            const QModelIndex current = table()->currentIndex();
            QVERIFY(table()->viewport()->rect().contains(table()->visualRect(current).center()));
            QVERIFY(table()->selectionModel()->isRowSelected(row, {}));
            seen.append(QString("%1,%2").arg(current.row()).arg(current.column()));
            pressKey(row % 2 == 0 ? Qt::Key_Right : Qt::Key_Left);
        }
        pressKey(Qt::Key_Down);
    }
    QCOMPARE(seen,
             QStringList({"0,0", "0,1", "0,2", "0,4", "0,3", //
                          "1,3", "1,4", "1,2", "1,1", "1,0", //
                          "2,0", "2,1", "2,2", "2,4", "2,3"}));
}

void TestKeyboardWalk::aKeyDoesWhatTheButtonOfTheCellDoes_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("operation");
    const QPair<const char *, Qt::Key> keys[] = {{"Return", Qt::Key_Return},
                                                 {"Enter", Qt::Key_Enter},
                                                 {"Space", Qt::Key_Space},
                                                 {"Insert", Qt::Key_Insert}};
    const QString service = "Сервисное обслуживание - Sodi  10";
    const QString complaint = "Задание - Sodi  10";
    for (const auto &[name, key] : keys) {
        QTest::addRow("%s, position", name) << int(key) << 0 << service << "--";
        QTest::addRow("%s, model", name) << int(key) << 1 << complaint << "--";
        QTest::addRow("%s, number", name) << int(key) << 2 << complaint << "--";
        QTest::addRow("%s, operation", name) << int(key) << 3 << service << "Масло";
        QTest::addRow("%s, empty operation", name) << int(key) << 4 << service << "Цепь";
    }
}

void TestKeyboardWalk::aKeyDoesWhatTheButtonOfTheCellDoes()
{
    QFETCH(int, key);
    QFETCH(int, column);
    QFETCH(QString, title);
    QFETCH(QString, operation);
    tabTo<QTreeView>("tvMaintainanceTable");
    goTo(m_window->visibleRowOf("10"), column);
    QStringList shown;
    onNextDialog([&shown](QDialog &dialog) {
        shown << dialog.windowTitle() << child<QComboBox>(dialog, "cbOperation")->currentText();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    pressKey(Qt::Key(key));
    QCOMPARE(shown, QStringList({title, operation}));
    QCOMPARE(focused(), table());
    QCOMPARE(table()->currentIndex().column(), column);
    for (const Qt::KeyboardModifier modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::ShiftModifier})
        pressKey(Qt::Key(key), modifier);
    QVERIFY(!QApplication::activeModalWidget());
}

void TestKeyboardWalk::aServiceAndAComplaintAreRecorded()
{
    tabTo<QTreeView>("tvMaintainanceTable");
    goTo(m_window->visibleRowOf("20"), 4);
    const auto write = [](const QString &comment) {
        return [comment](QDialog &dialog) {
            QVERIFY(QTest::qWaitForWindowActive(&dialog));
            auto *comments = child<QPlainTextEdit>(dialog, "teComments");
            for (int i = 0; i < 10 && !comments->hasFocus(); ++i)
                ::pressKey(dialog, Qt::Key_Tab);
            typeText(comments, comment);
            ::pressKey(dialog, Qt::Key_Tab);
            ::pressKey(dialog, Qt::Key_Return);
        };
    };
    onNextDialog(write("смазал"));
    pressKey(Qt::Key_Return);
    m_window->settle();
    QCOMPARE(database->rows(everyRecord).mid(2), QStringList("2|6|1|смазал"));

    QCOMPARE(focused(), table());
    goTo(m_window->visibleRowOf("20"), 1);
    onNextDialog(write("стук"));
    pressKey(Qt::Key_Insert);
    m_window->settle();
    QCOMPARE(database->rows(everyRecord).mid(3), QStringList("2|-1|0|стук"));
}

void TestKeyboardWalk::aHeldKeyOpensOneDialog()
{
    tabTo<QTreeView>("tvMaintainanceTable");
    goTo(0, 3);
    const auto sendReturn = [this](bool isRepeated) {
        return opensDialog(
            [=] { QTest::simulateEvent(table(), true, Qt::Key_Return, {}, QString(), isRepeated); });
    };
    QVERIFY(sendReturn(false));
    QVERIFY(!sendReturn(true));
}

void TestKeyboardWalk::aHeldKeyRecordsNothing_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("column");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        const QByteArray name = QKeySequence(key).toString().toUtf8();
        QTest::addRow("service, %s", name.constData()) << int(key) << 3;
        QTest::addRow("complaint, %s", name.constData()) << int(key) << 1;
    }
}

void TestKeyboardWalk::aHeldKeyRecordsNothing()
{
    QFETCH(int, key);
    QFETCH(int, column);
    tabTo<QTreeView>("tvMaintainanceTable");
    goTo(0, column);
    const auto send = [key](const QWidget &window, QEvent::Type type, bool isRepeated) {
        const QString text = key == Qt::Key_Space ? " " : "\r";
        qt_handleKeyEvent(window.windowHandle(), type, key, {}, text, isRepeated);
    };
    QString written = "-";
    onNextDialog([&](QDialog &dialog) {
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        for (int i = 0; i < 3; ++i) {
            send(dialog, QEvent::KeyRelease, true);
            send(dialog, QEvent::KeyPress, true);
        }
        send(dialog, QEvent::KeyRelease, false);
        written = child<QPlainTextEdit>(dialog, "teComments")->toPlainText();
        qt_handleKeyEvent(dialog.windowHandle(), QEvent::KeyPress, Qt::Key_Escape, {}, "\x1b");
    });
    send(*m_window->form, QEvent::KeyPress, false);
    QVERIFY(allDialogsAnswered());
    QCOMPARE(written, QString());
    m_window->settle();
    QCOMPARE(database->rows(everyRecord).size(), 2);
}

void TestKeyboardWalk::theFocusAloneMeansNoCar()
{
    tabTo<QTreeView>("tvMaintainanceTable");
    QVERIFY(!table()->currentIndex().isValid());
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Insert})
        pressKey(key);
    QVERIFY(!QApplication::activeModalWidget());
    pressKey(Qt::Key_Down);
    QCOMPARE(table()->currentIndex().row(), 0);
}

void TestKeyboardWalk::aCarThatTheFilterHidesIsNotMeant()
{
    tabTo<QTreeView>("tvMaintainanceTable");
    goTo(m_window->visibleRowOf("20"), 3);
    m_window->choose("cbFilterModels", m_window->find<QComboBox>("cbFilterModels")->findText("RX"));
    tabTo<QTreeView>("tvMaintainanceTable");
    QVERIFY(!table()->currentIndex().isValid());
    pressKey(Qt::Key_Return);
    QVERIFY(!QApplication::activeModalWidget());
    pressKey(Qt::Key_Left);
    QCOMPARE(table()->currentIndex(), table()->model()->index(0, 3));
}

void TestKeyboardWalk::theMenuKeyOffersBothActions()
{
    tabTo<QTreeView>("tvMaintainanceTable");
    goTo(m_window->visibleRowOf("10"), 4);
    const QRect cell = table()->visualRect(table()->currentIndex());
    QStringList offered;
    QPoint place;
    onNextMenu([&](QMenu &menu) {
        offered = texts(menu);
        place = table()->viewport()->mapFromGlobal(menu.pos());
        QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Return);
    });
    QStringList shown;
    onNextDialog([&shown](QDialog &dialog) {
        shown << dialog.windowTitle() << child<QComboBox>(dialog, "cbOperation")->currentText();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    pressMenuKey(focused());
    QCOMPARE(offered, QStringList({"Записать работу", "Жалоба или задание"}));
    QVERIFY2(cell.contains(place), qPrintable(QString("%1, %2").arg(place.x()).arg(place.y())));
    QCOMPARE(shown, QStringList({"Сервисное обслуживание - Sodi  10", "Цепь"}));
}

void TestKeyboardWalk::aRightClickOffersBothActionsForTheClickedCell_data()
{
    QTest::addColumn<bool>("onTheButton");
    QTest::newRow("cell") << false;
    QTest::newRow("hover button") << true;
}

void TestKeyboardWalk::aRightClickOffersBothActionsForTheClickedCell()
{
    QFETCH(bool, onTheButton);
    const QModelIndex cell = table()->model()->index(m_window->visibleRowOf("30"), 4);
    const QRect rect = table()->visualRect(cell);
    if (onTheButton)
        m_window->hover(cell);
    QString title;
    onNextDialog([&title](QDialog &dialog) {
        title = dialog.windowTitle();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    chooseFromContextMenu(table(), onTheButton ? rect.topLeft() + QPoint(4, 4) : rect.center(),
                          "Жалоба или задание");
    QCOMPARE(title, "Задание - RX  30");
    QCOMPARE(table()->currentIndex(), cell);
}

void TestKeyboardWalk::thereIsNoMenuWithoutACell()
{
    tabTo<QTreeView>("tvMaintainanceTable");
    pressMenuKey(focused());
    QVERIFY(!QApplication::activePopupWidget());
    QTest::mouseClick(m_window->form->windowHandle(), Qt::RightButton, {},
                      table()->viewport()->mapTo(m_window->form.get(), emptyPlace(*table())));
    QVERIFY(!QApplication::activePopupWidget());
}

void TestKeyboardWalk::aReloadUnderTheMenuMeansTheSameCell()
{
    tabTo<QTreeView>("tvMaintainanceTable");
    goTo(m_window->visibleRowOf("20"), 4);
    const int rowBefore = table()->currentIndex().row();
    onNextMenu([this](QMenu &menu) {
        database->addCar(9, "1", "Aero");
        m_window->reload();
        QAction *action = menu.actions().at(0);
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(action).center());
    });
    QStringList shown;
    onNextDialog([&shown](QDialog &dialog) {
        shown << dialog.windowTitle() << child<QComboBox>(dialog, "cbOperation")->currentText();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    pressMenuKey(focused());
    QVERIFY(m_window->visibleRowOf("20") != rowBefore);
    QCOMPARE(shown, QStringList({"Сервисное обслуживание - Sodi  20", "Цепь"}));
}

void TestKeyboardWalk::aCarDeletedUnderTheMenuIsNotReplaced()
{
    tabTo<QTreeView>("tvMaintainanceTable");
    goTo(m_window->visibleRowOf("10"), 3);
    for (const int action : {0, 1}) {
        onNextMenu([this, action](QMenu &menu) {
            database->exec("DELETE FROM cars WHERE id=1");
            m_window->reload();
            QCOMPARE(m_window->visibleRowOf("10"), -1);
            QTest::mouseClick(&menu, Qt::LeftButton, {},
                              menu.actionGeometry(menu.actions().at(action)).center());
        });
        QVERIFY(!opensDialog([this] { pressMenuKey(focused()); }));
        database->addCar(1, "10", "Sodi");
        m_window->reload();
        goTo(m_window->visibleRowOf("10"), 3);
    }
}

void TestKeyboardWalk::theWindowMayDieUnderTheOpenMenu()
{
    tabTo<QTreeView>("tvMaintainanceTable");
    goTo(0, 3);
    onNextMenu([this](QMenu &) { m_window->form.reset(); });
    pressMenuKey(focused());
    QVERIFY(!m_window->form);
}

void TestKeyboardWalk::theWindowMayDieUnderADialogFromTheMenu()
{
    const QPoint cell = table()->visualRect(table()->model()->index(0, 3)).center();
    onNextDialog([this](QDialog &) { m_window->form.reset(); });
    chooseFromContextMenu(table(), cell, "Записать работу");
    QVERIFY(!m_window->form);
}

void TestKeyboardWalk::theWindowMayDieUnderADialogFromAKey()
{
    tabTo<QTreeView>("tvMaintainanceTable");
    goTo(0, 1);
    onNextDialog([this](QDialog &) { m_window->form.reset(); });
    // The release would go to the table.
    QTest::keyPress(m_window->form->windowHandle(), Qt::Key_Return);
    QVERIFY(!m_window->form);
}

void TestKeyboardWalk::theLogIsFilteredAndARecordDeleted()
{
    openTab("tabServiceLog");
    const auto *log = m_window->find<QTreeView>("tvServiceLog");
    tabTo<QComboBox>("cbLogFilterModels");
    pressKey(Qt::Key_Down);
    QCOMPARE(log->model()->rowCount(), 1);
    pressKey(Qt::Key_Up);
    auto *number = tabTo<QLineEdit>("leLogFilterNum");
    typeText(number, "30");
    QCOMPARE(log->model()->rowCount(), 1);
    tabTo<QComboBox>("cbLogFilterOperation");
    pressKey(Qt::Key_Down);
    QCOMPARE(log->model()->rowCount(), 0);
    tabTo<QPushButton>("pushButton_2");
    pressKey(Qt::Key_Space);
    QCOMPARE(log->model()->rowCount(), 2);

    tabTo<QTreeView>("tvServiceLog");
    pressKey(Qt::Key_Down);
    QCOMPARE(log->currentIndex().siblingAtColumn(6).data().toString(), "вторая");
    const auto chooseDeletion = [](QMenu &menu) {
        QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Return);
    };
    onNextMenu(chooseDeletion);
    onNextDialog([](QDialog &dialog) {
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        ::pressKey(dialog, Qt::Key_Return); // "no"
    });
    pressMenuKey(focused());
    QVERIFY(m_window->events.isEmpty());

    onNextMenu(chooseDeletion);
    onNextDialog([](QDialog &dialog) {
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        ::pressKey(dialog, Qt::Key_Backtab, Qt::ShiftModifier);
        ::pressKey(dialog, Qt::Key_Return);
    });
    pressMenuKey(focused());
    m_window->settle();
    QCOMPARE(database->rows(everyRecord), QStringList("1|4|1|первая"));
}

void TestKeyboardWalk::theCurrentCellIsMarkedWhileKeysAreUsed()
{
    // A frame inside the cell, on the colour of the selection; its lower side, which no text touches.
    const auto frameColor = [this](const QModelIndex &cell) {
        const QRect rect = table()->visualRect(cell);
        return table()->viewport()->grab().toImage().pixelColor(rect.center().x(), rect.bottom() - 2);
    };
    const QPalette palette = table()->palette();
    tabTo<QTreeView>("tvMaintainanceTable");
    const QImage whole = table()->viewport()->grab().toImage();
    QCOMPARE(whole.pixelColor(whole.width() / 2, 2), palette.color(QPalette::Highlight));

    goTo(1, 4);
    const QModelIndex current = table()->currentIndex();
    QCOMPARE(frameColor(current), palette.color(QPalette::HighlightedText));
    QCOMPARE(frameColor(current.siblingAtColumn(3)), palette.color(QPalette::Highlight));

    click(table(), current);
    QCOMPARE(frameColor(current), palette.color(QPalette::Highlight));
    pressKey(Qt::Key_Left);
    QCOMPARE(frameColor(current.siblingAtColumn(3)), palette.color(QPalette::HighlightedText));
    m_window->find<QPushButton>("pushButton")->setFocus();
    QVERIFY(frameColor(current.siblingAtColumn(3)) != palette.color(QPalette::HighlightedText));
}

GARAGE_TEST(TestKeyboardWalk)
#include "tst_keyboardwalk.moc"
