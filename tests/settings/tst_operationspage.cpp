#include "settings/garagesettingsform.h"
#include "support/contextmenu.h"
#include "support/garagetest.h"
#include "support/garagewindow.h"

#include <QAction>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTreeView>

/// Which operation the actions of the settings page mean, and where its dialog is, with the real context
/// menu.
class TestOperationsPage : public GarageTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void openingThePageChoosesNoOperation();
    void aDeselectedOperationIsNotMeant();
    void afterARemovalNothingIsCurrent();
    void thePageMayDieUnderAQuestionFromTheMenu();
    void theLimitsDialogHasNoParentAndStaysAboveThePage();
    void thePageMayDieUnderTheLimitsDialog();

private:
    void trigger(const char *name) { m_page->findChild<QAction *>(name)->trigger(); }
    void clickRow(int row, Qt::KeyboardModifiers modifiers = {});
    QStringList stored() const { return m_database->rows("SELECT id FROM service_operations"); }
    void openLimits();

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<GarageSettingsForm> m_page;
    QTreeView *m_view = nullptr;
};

void TestOperationsPage::init()
{
    GarageTest::init();
    m_database = createDatabase();
    m_database->addCar(1, "10", "Sodi");
    for (int id = 1; id <= 3; ++id)
        m_database->addOperation(id, QString("Операция %1").arg(id));
    m_page = std::make_unique<GarageSettingsForm>();
    m_view = m_page->findChild<QTreeView *>("tvServiceOperations");
    m_page->move(120, 60);
    m_page->show();
    m_page->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
}

void TestOperationsPage::cleanup()
{
    m_page.reset();
    m_database.reset();
    GarageTest::cleanup();
}

void TestOperationsPage::clickRow(int row, Qt::KeyboardModifiers modifiers)
{
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, modifiers,
                      m_view->visualRect(m_view->model()->index(row, 0)).center());
}

void TestOperationsPage::openingThePageChoosesNoOperation()
{
    QTRY_VERIFY(m_view->hasFocus());
    QVERIFY(!m_view->currentIndex().isValid());
    chooseFromContextMenu(m_view, emptyPlace(*m_view), "Удалить");
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(stored().size(), 3);
}

void TestOperationsPage::aDeselectedOperationIsNotMeant()
{
    clickRow(1);
    clickRow(1, Qt::ControlModifier);
    QVERIFY(!m_view->currentIndex().isValid());
    trigger("actionRemoveOperation");
    QCOMPARE(stored().size(), 3);
}

void TestOperationsPage::afterARemovalNothingIsCurrent()
{
    clickRow(1);
    onNextDialog([](QDialog &dialog) {
        QTest::mouseClick(qobject_cast<QMessageBox *>(&dialog)->button(QMessageBox::Yes), Qt::LeftButton);
    });
    trigger("actionRemoveOperation");
    QVERIFY(allDialogsAnswered());
    QCOMPARE(stored(), QStringList({"1", "3"}));
    QVERIFY(!m_view->currentIndex().isValid());
    trigger("actionRemoveOperation");
    QCOMPARE(stored().size(), 2);
    m_view->setFocus();
    QTest::keyClick(m_view, Qt::Key_Down);
    QCOMPARE(m_view->currentIndex().row(), 1);
}

void TestOperationsPage::thePageMayDieUnderAQuestionFromTheMenu()
{
    const QPoint cell = m_view->visualRect(m_view->model()->index(1, 1)).center();
    onNextDialog([this](QDialog &) { m_page.reset(); });
    chooseFromContextMenu(m_view, cell, "Удалить");
    QVERIFY(allDialogsAnswered());
    QVERIFY(!m_page);
    QCOMPARE(stored().size(), 3);
}

void TestOperationsPage::openLimits()
{
    auto *schedule = m_page->findChild<QTreeView *>("tvServiceReglament");
    const QPoint cell = schedule->visualRect(schedule->model()->index(0, 2)).center();
    QTest::mouseClick(schedule->viewport(), Qt::LeftButton, {}, cell);
    QTest::mouseDClick(schedule->viewport(), Qt::LeftButton, {}, cell);
}

void TestOperationsPage::theLimitsDialogHasNoParentAndStaysAboveThePage()
{
    onNextDialog([this](QDialog &dialog) {
        QVERIFY(!dialog.parentWidget());
        QCOMPARE(dialog.windowHandle()->transientParent(), m_page->windowHandle());
        const QPoint distance = dialog.geometry().center() - m_page->geometry().center();
        QVERIFY2(distance.manhattanLength() < 20, qPrintable(QString::number(distance.manhattanLength())));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    openLimits();
    QVERIFY(allDialogsAnswered());
}

void TestOperationsPage::thePageMayDieUnderTheLimitsDialog()
{
    onNextDialog([this](QDialog &) { m_page.reset(); });
    openLimits();
    QVERIFY(allDialogsAnswered());
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(m_database->rows("SELECT * FROM service_reglament").isEmpty());
}

GARAGE_TEST(TestOperationsPage)
#include "tst_operationspage.moc"
