#include "support/contextmenu.h"
#include "support/databaselock.h"
#include "support/garagetest.h"
#include "support/garagewindow.h"

#include <QAction>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTreeView>

namespace {

const QString deleteText = "Удалить запись";

} // namespace

/// Which record the actions of the service log mean, with real focus, keys and the real context menu.
class TestCurrentLogRecord : public GarageTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void theFocusAloneChoosesNoRecord();
    void aRightClickBelowTheRecordsChoosesNone();
    void aDeselectedRecordIsNotMeant();
    void aRecordThatTheFilterHidesHasNoReplacement();
    void afterADeletionNothingIsCurrent();
    void theArrowKeysStartWhereTheDeletedRecordWas_data();
    void theArrowKeysStartWhereTheDeletedRecordWas();
    void theWindowMayDieUnderAQuestionFromTheMenu();
    void theWindowMayDieUnderTheOpenMenu();
    void theMenuKeyOffersTheActionsOnce();
    void aReloadUnderWayDoesNotBringADeletedRecordBack();
    void aRecordThatCouldNotBeDeletedComesBack();
    void aRecordWithoutATimeIsDoneNow();

private:
    void trigger(const char *action) { m_window->find<QAction>(action)->trigger(); }
    void clickRow(int row, Qt::KeyboardModifiers modifiers = {});
    void deleteCurrent();
    QStringList shown() const;
    QString stored() const;

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<GarageWindow> m_window;
    QTreeView *m_log = nullptr;
};

void TestCurrentLogRecord::init()
{
    GarageTest::init();
    m_database = createDatabase();
    m_database->addCar(1, "12", "Sodi");
    m_database->addCar(2, "7", "RX");
    for (int day = 1; day <= 5; ++day) {
        m_database->addRecord(day == 3 ? 2 : 1, -1, QString("2026-03-0%1T10:00Z").arg(day), DoneState,
                              QString::number(day));
    }
    m_window = std::make_unique<GarageWindow>();
    m_window->show();
    m_window->openTab("tabServiceLog");
    m_window->takeEvents();
    m_log = m_window->find<QTreeView>("tvServiceLog");
    QVERIFY(QTest::qWaitForWindowActive(m_window->form.get()));
}

void TestCurrentLogRecord::cleanup()
{
    m_window.reset();
    m_database.reset();
    GarageTest::cleanup();
}

void TestCurrentLogRecord::clickRow(int row, Qt::KeyboardModifiers modifiers)
{
    QTest::mouseClick(m_log->viewport(), Qt::LeftButton, modifiers,
                      m_log->visualRect(m_log->model()->index(row, 3)).center());
}

void TestCurrentLogRecord::deleteCurrent()
{
    onNextDialog([](QDialog &dialog) {
        QTest::mouseClick(qobject_cast<QMessageBox *>(&dialog)->button(QMessageBox::Yes), Qt::LeftButton);
    });
    trigger("actionDeleteMaintainanceItem");
    QVERIFY(allDialogsAnswered());
}

QStringList TestCurrentLogRecord::shown() const
{
    QStringList comments;
    for (int row = 0; row < m_log->model()->rowCount(); ++row)
        comments.append(m_log->model()->index(row, 6).data().toString());
    return comments;
}

QString TestCurrentLogRecord::stored() const
{
    return m_database->value("SELECT group_concat(id) FROM (SELECT id FROM maintainance ORDER BY id)")
        .toString();
}

void TestCurrentLogRecord::theFocusAloneChoosesNoRecord()
{
    m_window->find<QLineEdit>("leLogFilterNum")->setFocus();
    for (int i = 0; i < 10 && !m_log->hasFocus(); ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(m_log->hasFocus());
    QVERIFY(!m_log->currentIndex().isValid());
    QTest::keyClick(m_log, Qt::Key_Down);
    QCOMPARE(m_log->currentIndex().row(), 0);
    QVERIFY(m_log->selectionModel()->isRowSelected(0, {}));
}

void TestCurrentLogRecord::aRightClickBelowTheRecordsChoosesNone()
{
    m_log->setFocus();
    chooseFromContextMenu(m_log, emptyPlace(*m_log), deleteText);
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(m_window->events.isEmpty());
    QCOMPARE(stored(), "1,2,3,4,5");
}

void TestCurrentLogRecord::aDeselectedRecordIsNotMeant()
{
    clickRow(1);
    QCOMPARE(m_log->currentIndex().row(), 1);
    clickRow(1, Qt::ControlModifier);
    QVERIFY(m_log->selectionModel()->selectedRows().isEmpty());
    QVERIFY(!m_log->currentIndex().isValid());
    trigger("actionDeleteMaintainanceItem");
    trigger("actionDoneOperation");
    QVERIFY(m_window->events.isEmpty());
    QTest::keyClick(m_log, Qt::Key_Down);
    QCOMPARE(m_log->currentIndex().row(), 2);
}

void TestCurrentLogRecord::aRecordThatTheFilterHidesHasNoReplacement()
{
    clickRow(2); // the only one of its car
    m_window->choose("cbLogFilterModels", 1);
    QCOMPARE(shown(), QStringList({"5", "4", "2", "1"}));
    QVERIFY(!m_log->currentIndex().isValid());
    QVERIFY(m_log->selectionModel()->selectedRows().isEmpty());
}

void TestCurrentLogRecord::afterADeletionNothingIsCurrent()
{
    clickRow(0);
    deleteCurrent();
    QVERIFY(!m_log->currentIndex().isValid());
    m_log->clearFocus();
    m_log->setFocus();
    trigger("actionDeleteMaintainanceItem"); // the same again, without choosing
    QVERIFY(!QApplication::activeModalWidget());
    m_window->settle();
    QCOMPARE(stored(), "1,2,3,4");
}

void TestCurrentLogRecord::theArrowKeysStartWhereTheDeletedRecordWas_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("next");
    QTest::newRow("down") << 2 << int(Qt::Key_Down) << 2;
    QTest::newRow("up") << 2 << int(Qt::Key_Up) << 1;
    QTest::newRow("down from the last") << 4 << int(Qt::Key_Down) << 3;
    QTest::newRow("up from the first") << 0 << int(Qt::Key_Up) << 0;
}

void TestCurrentLogRecord::theArrowKeysStartWhereTheDeletedRecordWas()
{
    QFETCH(int, row);
    QFETCH(int, key);
    QFETCH(int, next);
    clickRow(row);
    deleteCurrent();
    m_window->settle();
    QTest::keyClick(m_log, Qt::Key(key));
    QCOMPARE(m_log->currentIndex().row(), next);
    QVERIFY(m_log->selectionModel()->isRowSelected(next, {}));
}

void TestCurrentLogRecord::theWindowMayDieUnderAQuestionFromTheMenu()
{
    const QPoint cell = m_log->visualRect(m_log->model()->index(1, 3)).center();
    onNextDialog([this](QDialog &) { m_window->form.reset(); });
    chooseFromContextMenu(m_log, cell, deleteText);
    QVERIFY(allDialogsAnswered());
    QVERIFY(!m_window->form);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(stored(), "1,2,3,4,5");
}

void TestCurrentLogRecord::theWindowMayDieUnderTheOpenMenu()
{
    QTimer::singleShot(0, this, [this] {
        QVERIFY(QApplication::activePopupWidget());
        m_window->form.reset();
    });
    const QPoint cell = m_log->visualRect(m_log->model()->index(1, 3)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, cell, m_log->viewport()->mapToGlobal(cell));
    QApplication::sendEvent(m_log->viewport(), &event);
    QVERIFY(!m_window->form);
    QVERIFY(!QApplication::activePopupWidget());
}

void TestCurrentLogRecord::theMenuKeyOffersTheActionsOnce()
{
    QCOMPARE(m_log->contextMenuPolicy(), Qt::ActionsContextMenu);
    QCOMPARE(m_log->actions().size(), 2);
    int menus = 0;
    QStringList offered;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu)
            return;
        ++menus;
        for (const QAction *action : menu->actions())
            offered.append(action->text());
        menu->close();
    });
    timer.start(0);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {10, 10}, m_log->mapToGlobal(QPoint(10, 10)));
    QApplication::sendEvent(m_log, &event);
    QTRY_COMPARE(menus, 1);
    QCOMPARE(offered, QStringList({deleteText, "Выполнено"}));
}

void TestCurrentLogRecord::aReloadUnderWayDoesNotBringADeletedRecordBack()
{
    clickRow(0);
    QStringList afterEachReload;
    connect(&m_window->form->updater(), &GarageUpdater::garageStatsUpdated, this,
            [&] { afterEachReload.append(shown().join(' ')); });
    onNextDialog([&](QDialog &dialog) {
        emit m_window->form->reloadGarageStats();
        QTest::qSleep(300); // it has read the record by then, and its result waits to be delivered
        afterEachReload.clear();
        QTest::mouseClick(qobject_cast<QMessageBox *>(&dialog)->button(QMessageBox::Yes), Qt::LeftButton);
    });
    trigger("actionDeleteMaintainanceItem");
    QVERIFY(allDialogsAnswered());
    QCOMPARE(shown().first(), "4");
    m_window->settle();
    QCOMPARE(afterEachReload, QStringList({"4 3 2 1", "4 3 2 1"}));
    // Its id is free again.
    m_database->addRecord(1, -1, "2026-03-09T10:00Z", DoneState, "новая");
    m_window->reload();
    QCOMPARE(shown().first(), "новая");
}

void TestCurrentLogRecord::aRecordThatCouldNotBeDeletedComesBack()
{
    m_database->exec("CREATE TRIGGER fault BEFORE DELETE ON maintainance "
                     "BEGIN SELECT RAISE(ABORT, 'injected'); END");
    clickRow(0);
    deleteCurrent();
    QCOMPARE(shown().size(), 4);
    m_window->settle();
    QTRY_COMPARE(shown().size(), 5);
}

void TestCurrentLogRecord::aRecordWithoutATimeIsDoneNow()
{
    m_database->exec("UPDATE maintainance SET operation_time='soon' WHERE id=5");
    m_window->reload();
    m_log->setCurrentIndex(m_log->model()->index(int(shown().indexOf("5")), 0));
    const QDateTime before = QDateTime::currentDateTime();
    QDateTime offered;
    onNextDialog([&offered](QDialog &dialog) {
        offered = dialog.findChild<QDateTimeEdit *>("deOperationDateTime")->dateTime();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    trigger("actionDoneOperation");
    QVERIFY(allDialogsAnswered());
    QVERIFY(offered.secsTo(before) < 60);
    QVERIFY(offered <= QDateTime::currentDateTime());
}

GARAGE_TEST(TestCurrentLogRecord)
#include "tst_currentlogrecord.moc"
