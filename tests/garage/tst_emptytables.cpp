#include "models/emptytablehint.h"
#include "support/garagetest.h"
#include "support/garagewindow.h"
#include "support/json.h"

#include <QLineEdit>
#include <QTabWidget>
#include <QTreeView>

/// What the empty tables of the window and of the settings page say.
class TestEmptyTables : public DatabaseTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void aNewFileSaysWhatWillBeShown_data();
    void aNewFileSaysWhatWillBeShown();
    void beforeTheFirstReloadNothingIsSaid();
    void filtersThatHideEverythingAreNamed();
    void theAvailableListSaysHowItIsFilled();
    void aBusyFileIsNamed();
    void everyTextFits_data();
    void everyTextFits();

private:
    static QString hint(const QTreeView *view) { return view->findChild<EmptyTableHint *>()->text(); }
    QString hint(const char *view) const { return hint(m_window->find<QTreeView>(view)); }
    QTreeView *viewOf(const QString &name) const;

    std::unique_ptr<GarageWindow> m_window;
    QFont m_font;
};

void TestEmptyTables::init()
{
    DatabaseTest::init();
    m_font = QApplication::font();
    m_window = std::make_unique<GarageWindow>();
}

void TestEmptyTables::cleanup()
{
    m_window.reset();
    QApplication::setFont(m_font);
    DatabaseTest::cleanup();
}

QTreeView *TestEmptyTables::viewOf(const QString &name) const
{
    auto *view = m_window->form->findChild<QTreeView *>(name);
    return view ? view : m_window->settings->findChild<QTreeView *>(name);
}

void TestEmptyTables::aNewFileSaysWhatWillBeShown_data()
{
    QTest::addColumn<QString>("view");
    QTest::addColumn<QString>("subject");
    QTest::newRow("all cars") << "tvAllCars"
                              << "машины, которые заведены";
    QTest::newRow("available cars") << "tvAvailableCars"
                                    << "машины, доступные для заездов.";
    QTest::newRow("maintenance") << "tvMaintainanceTable"
                                 << "машины, которые заведены";
    QTest::newRow("log") << "tvServiceLog"
                         << "записи о работах и жалобы";
    QTest::newRow("operations") << "tvServiceOperations"
                                << "сервисные операции";
    QTest::newRow("schedule") << "tvServiceReglament"
                              << "модели машин";
}

void TestEmptyTables::aNewFileSaysWhatWillBeShown()
{
    QFETCH(QString, view);
    QFETCH(QString, subject);
    m_window->show();
    const QString text = hint(viewOf(view));
    QVERIFY2(text.startsWith("Здесь появятся " + subject), qPrintable(text));

    database->addCar(1, "12", "Sodi");
    database->addOperation(2, "Масло");
    database->addRecord(1, 2, "2026-03-01T10:00Z", DoneState, "");
    m_window->form->loadCars(json(R"({"cars": [{"id": 1, "available_for_runs": true}]})"));
    m_window->settings->reloadReglamentModel();
    m_window->reload();
    QCOMPARE(hint(viewOf(view)), QString());
}

void TestEmptyTables::beforeTheFirstReloadNothingIsSaid()
{
    QCOMPARE(hint("tvMaintainanceTable"), QString());
    QCOMPARE(hint("tvServiceLog"), QString());
}

void TestEmptyTables::filtersThatHideEverythingAreNamed()
{
    database->addCar(1, "12", "Sodi");
    database->addRecord(1, 2, "2026-03-01T10:00Z", DoneState, "");
    m_window->show();
    m_window->choose("cbFilterServiceState", 1);
    QVERIFY(hint("tvMaintainanceTable").startsWith("Под фильтры не подходит ни одна машина"));
    m_window->click("pushButton");
    QCOMPARE(hint("tvMaintainanceTable"), QString());

    m_window->openTab("tabServiceLog");
    typeText(m_window->find<QLineEdit>("leLogFilterNum"), "77");
    QVERIFY(hint("tvServiceLog").startsWith("Под фильтры не подходит ни одна запись"));
    m_window->click("pushButton_2");
    QCOMPARE(hint("tvServiceLog"), QString());
}

void TestEmptyTables::theAvailableListSaysHowItIsFilled()
{
    m_window->form->loadCars(json(R"({"cars": [{"id": 1, "available_for_runs": false}]})"));
    QCOMPARE(hint("tvAllCars"), QString());
    QVERIFY(hint("tvAvailableCars").endsWith("выделите их слева и нажмите стрелку вправо."));
}

void TestEmptyTables::aBusyFileIsNamed()
{
    m_window.reset();
    database->exec("BEGIN EXCLUSIVE");
    m_window = std::make_unique<GarageWindow>();
    QTreeView *operations = viewOf("tvServiceOperations");
    QVERIFY(hint(operations).startsWith("База занята"));
    database->exec("COMMIT");
    QTRY_VERIFY(hint(operations).startsWith("Здесь появятся"));
}

void TestEmptyTables::everyTextFits_data()
{
    QTest::addColumn<int>("points");
    QTest::newRow("usual font") << 9;
    QTest::newRow("twice the usual font") << 18;
}

void TestEmptyTables::everyTextFits()
{
    QFETCH(int, points);
    m_window.reset();
    QFont font = m_font;
    font.setPointSize(points);
    QApplication::setFont(font);
    m_window = std::make_unique<GarageWindow>();
    m_window->form->loadCars(json(R"({"cars": [{"id": 1, "available_for_runs": false}]})"));
    m_window->form->resize(900, 600);
    m_window->show();
    m_window->settings->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window->settings.get()));

    for (const char *name : {"tvAvailableCars", "tvMaintainanceTable", "tvServiceLog", "tvServiceOperations",
                             "tvServiceReglament"}) {
        QTreeView *view = viewOf(name);
        if (auto *tabs = m_window->form->findChild<QTabWidget *>("tabWidget"); tabs->isAncestorOf(view)) {
            for (int tab = 0; tab < tabs->count() && !view->isVisible(); ++tab)
                tabs->setCurrentIndex(tab);
        }
        QCoreApplication::processEvents();
        const QImage image = view->viewport()->grab().toImage();
        const QRgb background = view->palette().color(QPalette::Base).rgb();
        QRect ink;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) != background)
                    ink |= QRect(x, y, 1, 1);
            }
        }
        QVERIFY2(ink.width() > 100 && ink.height() > 6, name);
        QVERIFY2(image.rect().adjusted(9, 9, -9, -9).contains(ink), name);
    }
}

GARAGE_TEST(TestEmptyTables)
#include "tst_emptytables.moc"
