#include "support/garagetest.h"
#include "support/garagewindow.h"

#include <QComboBox>
#include <QLineEdit>
#include <QScrollBar>
#include <QTreeView>

/// That a reload leaves alone what the user is doing: open lists, texts, the place in the log, selections and
/// widths.
class TestReloads : public GarageTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void anOpenListKeepsItsHighlightedEntry_data();
    void anOpenListKeepsItsHighlightedEntry();
    void anOpenListFollowsNewEntries_data();
    void anOpenListFollowsNewEntries();
    void anOpenListKeepsItsScrollPosition();
    void unchangedEntriesAreLeftAlone_data() { anOpenListKeepsItsHighlightedEntry_data(); }
    void unchangedEntriesAreLeftAlone();
    void renamedOperationsAreOfferedByTheirNewNames();
    void aNumberBeingTypedIsLeftAlone();
    void theLogKeepsTheRecordAtItsTop_data();
    void theLogKeepsTheRecordAtItsTop();
    void theLogAtItsTopShowsNewRecords();
    void theLogKeepsItsPlaceWhenTheTopRecordVanishes();
    void theLogKeepsItsPlaceWhileAnotherTabIsShown();
    void theLogKeepsItsPlaceUnderItsFilter();
    void theChosenRecordIsFollowed();
    void theTableKeepsItsPlaceAndWidths();

private:
    void addRecords(int count, const QString &day, bool isTall = false);
    QComboBox *openList(const char *page, const char *name);
    static QString highlighted(const QComboBox &combo);
    QModelIndex topRecord() const { return m_log->indexAt({5, 0}); }
    static QString commentOf(const QModelIndex &record)
    {
        return record.sibling(record.row(), 6).data().toString();
    }
    /// Pixels of the log's viewport.
    QImage logPicture() const { return m_log->viewport()->grab().toImage(); }

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<GarageWindow> m_window;
    QTreeView *m_log = nullptr;
};

void TestReloads::init()
{
    GarageTest::init();
    m_database = createDatabase();
    m_database->addOperation(2, "Масло");
    m_database->addOperation(3, "Цепь");
    m_database->addCar(1, "12", "Sodi");
    m_database->addCar(2, "7", "RX");
    addRecords(60, "2026-03-01");
    m_window = std::make_unique<GarageWindow>();
    m_window->form->resize(900, 500);
    m_window->show();
    m_log = m_window->find<QTreeView>("tvServiceLog");
    QVERIFY(QTest::qWaitForWindowActive(m_window->form.get()));
}

void TestReloads::cleanup()
{
    m_window.reset();
    m_database.reset();
    GarageTest::cleanup();
}

void TestReloads::addRecords(int count, const QString &day, bool isTall)
{
    m_database->exec("BEGIN");
    for (int minute = 0; minute < count; ++minute) {
        const QString time = QString("%1T10:%2:00Z").arg(day).arg(minute, 2, 10, QChar('0'));
        m_database->addRecord(1 + minute % 2, 2, time, DoneState,
                              day + ' ' + QString::number(minute) + (isTall ? "\nи ещё\nдве строки" : ""));
    }
    m_database->exec("COMMIT");
}

QComboBox *TestReloads::openList(const char *page, const char *name)
{
    m_window->openTab(page);
    auto *combo = m_window->find<QComboBox>(name);
    combo->showPopup();
    return combo;
}

QString TestReloads::highlighted(const QComboBox &combo)
{
    return combo.view()->isVisible() ? combo.view()->currentIndex().data().toString() : "closed";
}

void TestReloads::anOpenListKeepsItsHighlightedEntry_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("entry");
    QTest::newRow("model of the table") << QByteArray("tabCars") << QByteArray("cbFilterModels") << "Sodi";
    QTest::newRow("model of the log")
        << QByteArray("tabServiceLog") << QByteArray("cbLogFilterModels") << "Sodi";
    QTest::newRow("operation") << QByteArray("tabServiceLog") << QByteArray("cbLogFilterOperation")
                               << "Масло";
    QTest::newRow("sort kind") << QByteArray("tabCars") << QByteArray("cbSortKind") << "Количество заездов";
    QTest::newRow("service state") << QByteArray("tabCars") << QByteArray("cbFilterServiceState")
                                   << "Требуется сервис";
}

void TestReloads::anOpenListKeepsItsHighlightedEntry()
{
    QFETCH(QByteArray, page);
    QFETCH(QByteArray, name);
    QFETCH(QString, entry);
    QComboBox *combo = openList(page, name);
    for (int i = 0; i < combo->count() && highlighted(*combo) != entry; ++i)
        QTest::keyClick(combo->view(), Qt::Key_Down);
    QCOMPARE(highlighted(*combo), entry);

    m_window->reload();
    QCOMPARE(highlighted(*combo), entry);
    QTest::keyClick(combo->view(), Qt::Key_Return);
    QCOMPARE(combo->currentText(), entry);
    QVERIFY(!combo->view()->isVisible());
}

void TestReloads::anOpenListFollowsNewEntries_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QStringList>("entries");
    QTest::newRow("model of the table") << QByteArray("tabCars") << QByteArray("cbFilterModels") << "Sodi"
                                        << QStringList({"Все", "Birel", "RX", "Sodi"});
    QTest::newRow("model of the log") << QByteArray("tabServiceLog") << QByteArray("cbLogFilterModels")
                                      << "Sodi" << QStringList({"Все", "Birel", "RX", "Sodi"});
    QTest::newRow("operation") << QByteArray("tabServiceLog") << QByteArray("cbLogFilterOperation") << "Цепь"
                               << QStringList({"Все", "Невыполненные", "Болты", "Масло", "Цепь", "Прочее"});
}

void TestReloads::anOpenListFollowsNewEntries()
{
    QFETCH(QByteArray, page);
    QFETCH(QByteArray, name);
    QFETCH(QString, chosen);
    QFETCH(QStringList, entries);
    QComboBox *combo = openList(page, name);
    while (highlighted(*combo) != chosen)
        QTest::keyClick(combo->view(), Qt::Key_Down);

    m_database->exec("UPDATE cars SET id=id+10");
    m_database->addCar(3, "1", "Birel");
    m_database->addOperation(1, "Болты");
    m_window->reload();
    QStringList offered;
    for (int entry = 0; entry < combo->count(); ++entry)
        offered.append(combo->itemText(entry));
    std::sort(offered.begin(), offered.end());
    std::sort(entries.begin(), entries.end());
    QCOMPARE(offered, entries);
    QCOMPARE(highlighted(*combo), chosen);
    QTest::keyClick(combo->view(), Qt::Key_Return);
    QCOMPARE(combo->currentText(), chosen);
}

void TestReloads::anOpenListKeepsItsScrollPosition()
{
    m_database->exec("BEGIN");
    for (int op = 10; op < 90; ++op)
        m_database->addOperation(op, QString("Операция %1").arg(op));
    m_database->exec("COMMIT");
    m_window->reload();
    QComboBox *combo = openList("tabServiceLog", "cbLogFilterOperation");
    for (int i = 0; i < 40; ++i)
        QTest::keyClick(combo->view(), Qt::Key_Down);
    QScrollBar *scrollBar = combo->view()->verticalScrollBar();
    scrollBar->setValue(scrollBar->value() + scrollBar->singleStep());
    const int scrolled = scrollBar->value();
    QVERIFY(scrolled > 0);
    m_window->reload();
    QCOMPARE(scrollBar->value(), scrolled);
    m_database->addOperation(95, "Новая");
    m_window->reload();
    QCOMPARE(scrollBar->value(), scrolled);
}

void TestReloads::unchangedEntriesAreLeftAlone()
{
    QFETCH(QByteArray, name);
    const auto *combo = m_window->find<QComboBox>(name);
    QSignalSpy removed(combo->model(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy reset(combo->model(), &QAbstractItemModel::modelReset);
    m_window->reload();
    QCOMPARE(removed.count() + reset.count(), 0);
}

void TestReloads::renamedOperationsAreOfferedByTheirNewNames()
{
    m_window->openTab("tabServiceLog");
    m_window->choose("cbLogFilterOperation", 3);
    const auto *combo = m_window->find<QComboBox>("cbLogFilterOperation");
    m_database->exec("UPDATE service_operations SET operation_name='Цепь и звёзды' WHERE id=3");
    m_window->reload();
    QCOMPARE(combo->currentText(), "Цепь и звёзды");
    m_database->exec("UPDATE service_operations SET id=4 WHERE id=2"); // the same name
    m_window->reload();
    QCOMPARE(combo->itemText(3), "Масло");
    QCOMPARE(combo->itemData(3).toInt(), 4);
    QCOMPARE(combo->currentText(), "Цепь и звёзды");
}

void TestReloads::aNumberBeingTypedIsLeftAlone()
{
    m_window->openTab("tabServiceLog");
    auto *field = m_window->find<QLineEdit>("leLogFilterNum");
    field->setFocus();
    typeText(field, "123");
    QTest::keyClick(field, Qt::Key_Left);
    QTest::keyClick(field, Qt::Key_Left, Qt::ShiftModifier);
    m_window->reload();
    QVERIFY(field->hasFocus());
    QCOMPARE(field->selectedText(), "2");
    QTest::keyClick(field, Qt::Key_4);
    QCOMPARE(field->text(), "143");
}

void TestReloads::theLogKeepsTheRecordAtItsTop_data()
{
    QTest::addColumn<bool>("isTall");
    QTest::addColumn<int>("scrolled");
    for (bool isTall : {false, true}) {
        QTest::addRow("%s records, a little", isTall ? "tall" : "short") << isTall << 7;
        QTest::addRow("%s records, in the middle", isTall ? "tall" : "short") << isTall << 333;
        QTest::addRow("%s records, at the end", isTall ? "tall" : "short") << isTall << 100000;
    }
}

void TestReloads::theLogKeepsTheRecordAtItsTop()
{
    QFETCH(bool, isTall);
    QFETCH(int, scrolled);
    m_window->openTab("tabServiceLog");
    m_log->verticalScrollBar()->setValue(scrolled);
    const QString top = commentOf(topRecord());
    const int y = m_log->visualRect(topRecord()).top();

    addRecords(9, "2026-03-02", isTall);
    m_window->reload();
    QCOMPARE(m_log->model()->rowCount(), 69);
    QCOMPARE(commentOf(topRecord()), top);
    QCOMPARE(m_log->visualRect(topRecord()).top(), y);
    m_window->reload();
    QCOMPARE(commentOf(topRecord()), top);
    QCOMPARE(m_log->visualRect(topRecord()).top(), y);
}

void TestReloads::theLogAtItsTopShowsNewRecords()
{
    m_window->openTab("tabServiceLog");
    addRecords(9, "2026-03-02");
    m_window->reload();
    QCOMPARE(m_log->verticalScrollBar()->value(), 0);
    QCOMPARE(commentOf(topRecord()), "2026-03-02 8");
}

void TestReloads::theLogKeepsItsPlaceWhenTheTopRecordVanishes()
{
    m_window->openTab("tabServiceLog");
    m_log->verticalScrollBar()->setValue(333);
    const QModelIndex next = m_log->indexBelow(topRecord());
    const QString second = commentOf(next);
    const int y = m_log->visualRect(next).top();
    m_database->exec("DELETE FROM maintainance WHERE comment=?", {commentOf(topRecord())});
    m_database->exec("DELETE FROM maintainance WHERE comment=?", {commentOf(m_log->model()->index(0, 0))});
    m_window->reload();
    QCOMPARE(m_log->model()->rowCount(), 58);
    QCOMPARE(commentOf(m_log->indexAt({5, y})), second);
    QCOMPARE(m_log->visualRect(m_log->indexAt({5, y})).top(), y);
}

void TestReloads::theLogKeepsItsPlaceWhileAnotherTabIsShown()
{
    m_window->openTab("tabServiceLog");
    m_log->verticalScrollBar()->setValue(333);
    const QString top = commentOf(topRecord());
    const int y = m_log->visualRect(topRecord()).top();
    m_window->openTab("tabCars");
    addRecords(9, "2026-03-02");
    m_window->reload();
    m_window->openTab("tabServiceLog");
    QCOMPARE(commentOf(topRecord()), top);
    QCOMPARE(m_log->visualRect(topRecord()).top(), y);
}

void TestReloads::theLogKeepsItsPlaceUnderItsFilter()
{
    m_window->openTab("tabServiceLog");
    m_window->choose("cbLogFilterModels", 1);
    m_log->verticalScrollBar()->setValue(100);
    const QString top = commentOf(topRecord());
    const int y = m_log->visualRect(topRecord()).top();
    addRecords(9, "2026-03-02");
    m_window->reload();
    QVERIFY(m_log->model()->rowCount() < 40);
    QCOMPARE(commentOf(topRecord()), top);
    QCOMPARE(m_log->visualRect(topRecord()).top(), y);
}

void TestReloads::theChosenRecordIsFollowed()
{
    m_window->openTab("tabServiceLog");
    m_log->verticalScrollBar()->setValue(333);
    click(m_log, m_log->indexBelow(topRecord()));
    const QString chosen = commentOf(m_log->currentIndex());
    const QImage before = logPicture();
    addRecords(9, "2026-03-02");
    m_window->reload();
    QCOMPARE(commentOf(m_log->currentIndex()), chosen);
    QCOMPARE(m_log->selectionModel()->selectedRows().size(), 1);
    QCOMPARE(commentOf(m_log->selectionModel()->selectedRows().constFirst()), chosen);
    // Everything but the row numbers.
    const QRect behindNumbers = before.rect().adjusted(m_log->columnWidth(0) + 1, 0, 0, 0);
    QCOMPARE(logPicture().copy(behindNumbers), before.copy(behindNumbers));
}

void TestReloads::theTableKeepsItsPlaceAndWidths()
{
    m_database->exec("BEGIN");
    for (int car = 10; car < 60; ++car)
        m_database->addCar(car, QString::number(car), "Sodi");
    m_database->exec("COMMIT");
    m_window->reload();
    auto *table = m_window->find<QTreeView>("tvMaintainanceTable");
    table->setColumnWidth(3, 900);
    table->setColumnWidth(4, 450);
    QTRY_VERIFY(table->horizontalScrollBar()->isVisible() && table->verticalScrollBar()->isVisible());
    table->horizontalScrollBar()->setValue(table->horizontalScrollBar()->maximum() - 3);
    table->verticalScrollBar()->setValue(20);
    const QModelIndex cell = table->model()->index(22, 4);
    table->selectionModel()->setCurrentIndex(cell,
                                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    const QImage before = table->viewport()->grab().toImage();
    const int scrolledX = table->horizontalScrollBar()->value();
    const int scrolledY = table->verticalScrollBar()->value();
    QVERIFY(scrolledX > 300);
    QVERIFY(scrolledY > 10);

    m_window->reload();
    QCOMPARE(table->columnWidth(3), 900);
    QCOMPARE(table->columnWidth(4), 450);
    QCOMPARE(table->horizontalScrollBar()->value(), scrolledX);
    QCOMPARE(table->verticalScrollBar()->value(), scrolledY);
    QCOMPARE(table->currentIndex().row(), 22);
    QCOMPARE(table->currentIndex().column(), 4);
    QCOMPARE(table->viewport()->grab().toImage(), before);
}

GARAGE_TEST(TestReloads)
#include "tst_reloads.moc"
