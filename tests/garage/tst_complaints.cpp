#include "support/databaselock.h"
#include "support/garagetest.h"
#include "support/garagewindow.h"

#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QWindow>

/// Complaints that the host requests while the window is in an unusual state.
class TestComplaints : public GarageTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void amendingSurvivesAReloadThatEmptiedTheTables();
    void aSecondComplaintBeforeTheReloadAmendsTheFirst();
    void aRepeatedRequestRaisesTheDialogThatTakesInput();
    void theDialogOfAHiddenWindowIsAboveTheActiveOne();

private:
    static void answer(QDialog &dialog, const QString &comment);
    void complain(int carId) { m_window->form->complainAboutCar({{"carId", carId}}); }
    QStringList records() const
    {
        return m_database->rows("SELECT id,car_id,operation_state,comment FROM maintainance ORDER BY id");
    }

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<GarageWindow> m_window;
};

void TestComplaints::init()
{
    GarageTest::init();
    m_database = createDatabase();
    m_database->addCar(1, "10", "Sodi");
    m_database->addCar(2, "9", "Sodi");
    m_window = std::make_unique<GarageWindow>();
}

void TestComplaints::cleanup()
{
    m_window.reset();
    m_database.reset();
    GarageTest::cleanup();
}

void TestComplaints::answer(QDialog &dialog, const QString &comment)
{
    dialog.findChild<QPlainTextEdit *>("teComments")->setPlainText(comment);
    QTest::mouseClick(dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

void TestComplaints::amendingSurvivesAReloadThatEmptiedTheTables()
{
    m_database->addRecord(1, -1, "2026-03-07T08:00Z", OpenState, "Стук");
    m_window->show();
    onNextDialog([this](QDialog &dialog) {
        m_database->exec("ALTER TABLE cars RENAME TO hidden");
        m_window->reload();
        QCOMPARE(m_window->find<QTreeView>("tvMaintainanceTable")->model()->rowCount(), 0);
        m_database->exec("ALTER TABLE hidden RENAME TO cars");
        answer(dialog, "громче");
    });
    complain(1);
    QVERIFY(allDialogsAnswered());
    QCOMPARE(records(), QStringList("1|1|0|громче"));
    m_window->settle();
}

void TestComplaints::aSecondComplaintBeforeTheReloadAmendsTheFirst()
{
    m_window->show();
    onNextDialog([](QDialog &dialog) { answer(dialog, "Стук"); });
    complain(1);
    onNextDialog([](QDialog &dialog) {
        QCOMPARE(dialog.findChild<QPlainTextEdit *>("teComments")->toPlainText(), "Стук");
        answer(dialog, "громче");
    });
    complain(1); // the reload of the first one waits to be delivered
    QVERIFY(allDialogsAnswered());
    QCOMPARE(records(), QStringList("1|1|0|громче"));
    m_window->settle();

    // Once it is closed and read, a new one is added.
    m_database->addRecord(1, -1, "2099-03-07T08:00Z", DoneState, QString());
    m_window->reload();
    m_window->reload();
    onNextDialog([](QDialog &dialog) { answer(dialog, "снова"); });
    complain(1);
    QCOMPARE(records().size(), 3);
    m_window->settle();
}

void TestComplaints::aRepeatedRequestRaisesTheDialogThatTakesInput()
{
    m_window->show();
    onNextDialog([this](QDialog &first) {
        onNextDialog([&](QDialog &second) {
            QVERIFY(&second != &first);
            QTRY_VERIFY(second.isActiveWindow());
            complain(1); // the first one is blocked by the second
            QTest::qWait(50);
            QVERIFY(second.isActiveWindow());
            QTest::keyClick(&second, Qt::Key_Escape);
        });
        complain(2);
        QTest::keyClick(&first, Qt::Key_Escape);
    });
    complain(1);
    QVERIFY(allDialogsAnswered());
    QVERIFY(records().isEmpty());
}

void TestComplaints::theDialogOfAHiddenWindowIsAboveTheActiveOne()
{
    m_window->reload(); // never shown
    QWidget host;
    host.setGeometry(60, 40, 640, 700);
    host.show();
    host.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&host));
    onNextDialog([&host](QDialog &dialog) {
        QCOMPARE(dialog.windowHandle()->transientParent(), host.windowHandle());
        const QPoint distance = dialog.geometry().center() - host.geometry().center();
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QVERIFY2(distance.manhattanLength() < 20,
                 qPrintable(QString("%1, %2").arg(distance.x()).arg(distance.y())));
    });
    complain(1);
    QVERIFY(allDialogsAnswered());
}

GARAGE_TEST(TestComplaints)
#include "tst_complaints.moc"
