#include "models/maintainancedelegate.h"
#include "models/maintainancefilterproxy.h"
#include "support/garagetest.h"
#include "support/maintainancesample.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QStringListModel>
#include <QTreeView>

using namespace MaintainanceSample;

Q_DECLARE_METATYPE(MaintainanceItem)

namespace {

/// The table as the window shows it: model, filter, delegate, view.
class ShownTable
{
public:
    /// The tester reports the renumbering of positions by the filter as a fault.
    enum Positions { OfTheTable, OfTheProxy };

    explicit ShownTable(Positions positions = OfTheTable)
        : modelTester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal)
    {
        proxy.setMaintainanceModel(&model);
        proxy.setReglament(&reglament);
        delegate.setReglament(&reglament);
        if (positions == OfTheProxy)
            model.setRowNumberProxy(&proxy);
        else
            new QAbstractItemModelTester(&proxy, QAbstractItemModelTester::FailureReportingMode::Fatal,
                                         &proxy);
        setOperations({1, 2, 3});
        view.setRootIsDecorated(false);
        view.setUniformRowHeights(true);
        view.setSelectionMode(QAbstractItemView::ExtendedSelection);
        view.setModel(&proxy);
        view.setItemDelegate(&delegate);
        view.header()->setSortIndicator(2, Qt::AscendingOrder);
        view.setSortingEnabled(true);
        view.resize(900, 500);
    }

    void show()
    {
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
    }
    void setOperations(const QList<int> &opIds)
    {
        const Reglament columns = Reglament::ofOperations(opIds);
        const ClearbackgroundTableModel::LayoutChange change(model);
        model.updateColumns(&columns, &view);
    }
    /// Ids of the cars that are shown, in order.
    QList<int> carIds() const
    {
        QList<int> result;
        for (int row = 0; row < proxy.rowCount(); ++row)
            result.append(carIdOf(proxy.index(row, 0)));
        return result;
    }
    int carIdOf(const QModelIndex &index) const
    {
        return index.isValid() ? model.itemAt(proxy.mapToSource(index).row()).carId : noId;
    }
    QModelIndex indexOfCar(int carId, int column) const
    {
        return proxy.index(int(carIds().indexOf(carId)), column);
    }

    Reglament reglament;
    MaintainanceModel model;
    MaintainanceFilterProxy proxy;
    MaintainanceDelegate delegate;
    QAbstractItemModelTester modelTester;
    QTreeView view;
};

ModelReglament limitsOf(const QString &model, const QList<ReglamentLimit> &limits)
{
    ModelReglament entry;
    entry.model = model;
    for (const ReglamentLimit &limit : limits)
        entry.limits.insert(limit.opId, limit);
    return entry;
}

MaintainanceItem sodi(int carId, const QList<OperationStat> &stats = {})
{
    return car(carId, QString::number(carId), "Sodi", stats);
}

} // namespace

/// Which cars the maintenance table shows, and that its indexes remain valid in every change of the source.
class TestMaintainanceFilterProxy : public GarageTest
{
    Q_OBJECT
private slots:
    void theModelFilterComparesExactly();
    void theModelFilterIsOffWhenDisabledOrEmpty();
    void carsThatNeedServicePass_data();
    void carsThatNeedServicePass();
    void bothFiltersApplyTogether();
    void everyEntryOfTheCarsModelCounts();
    void withoutReglamentEveryCarPasses();
    void filtersRunAgainOnlyWhenTheyChange();
    void editedLimitsAreSeenAfterRefiltering();
    void aHeaderClickSortsTheTable();
    void anotherModelIsShownWhole();
    void aTableThatIsGoneLeavesNoRows();

    void positionsAreRenumberedByTheFilter();
    void currentAndSelectionFollowTheirCars();
    void removedColumnsInvalidateTheirIndexes();
    void filtersSetDuringARefillHoldAfterIt();
    void aRecordedServiceShowsAtOnce();
    void aTableSelectedWholeSurvivesRefills();
    void nothingDanglesInRandomRefills_data();
    void nothingDanglesInRandomRefills();

    void filteringManyCarsReadsTheLimitsOncePerCar();
    void sortingManyCarsAsksForNoCells();
};

void TestMaintainanceFilterProxy::theModelFilterComparesExactly()
{
    ShownTable table;
    table.model.setItems({sodi(1), car(2, "2", "sodi"), car(3, "3", "Sodi RX"), sodi(4)});
    table.proxy.setModelFilter("Sodi", 1);
    QCOMPARE(table.proxy.modelFilter(), "Sodi");
    QCOMPARE(table.carIds(), QList<int>({1, 4}));
    table.proxy.setModelFilter("Sod", 2);
    QCOMPARE(table.carIds(), QList<int>());
}

void TestMaintainanceFilterProxy::theModelFilterIsOffWhenDisabledOrEmpty()
{
    ShownTable table;
    table.model.setItems({sodi(1), car(2, "2", QString())});
    table.proxy.setModelFilter("Sodi", 1);
    QCOMPARE(table.proxy.rowCount(), 1);
    table.proxy.setModelFilter("Sodi", 0);
    QCOMPARE(table.proxy.modelFilter(), QString());
    QCOMPARE(table.proxy.rowCount(), 2);
    table.proxy.setModelFilter(QString(), 1);
    QCOMPARE(table.proxy.rowCount(), 2);
}

void TestMaintainanceFilterProxy::carsThatNeedServicePass_data()
{
    QTest::addColumn<MaintainanceItem>("item");
    QTest::addColumn<bool>("passes");
    // Operation 1: 100 s, 10 runs, 50 laps. Operation 2: negative limits. Operation 3: no entry.
    QTest::newRow("no operations") << sodi(1) << false;
    QTest::newRow("at the limits") << sodi(1, {done(1, noonOf(1), 100, 10, 50)}) << false;
    QTest::newRow("one second over") << sodi(1, {done(1, noonOf(1), 101, 0, 0)}) << true;
    QTest::newRow("one run over") << sodi(1, {done(1, noonOf(1), 0, 11, 0)}) << true;
    QTest::newRow("one lap over") << sodi(1, {done(1, noonOf(1), 0, 0, 51)}) << true;
    QTest::newRow("over, never dated") << sodi(1, {done(1, {}, 0, 0, 51)}) << true;
    QTest::newRow("over a negative limit") << sodi(1, {done(2, noonOf(1), 9, 9, 9)}) << false;
    QTest::newRow("operation without limits") << sodi(1, {done(3, noonOf(1), 9999, 9999, 9999)}) << false;
    QTest::newRow("open, nothing driven") << sodi(1, {open(3)}) << true;
    QTest::newRow("open complaint") << sodi(1, {open(complaintOperationId), done(1, noonOf(1))}) << true;
    QTest::newRow("another model's limits")
        << car(1, "1", "Birel", {done(1, noonOf(1), 999, 999, 999)}) << false;
}

void TestMaintainanceFilterProxy::carsThatNeedServicePass()
{
    QFETCH(MaintainanceItem, item);
    QFETCH(bool, passes);
    ShownTable table;
    table.reglament.list = {limitsOf("Sodi", {{1, {}, 100, 10, 50}, {2, {}, -1, -1, -1}})};
    table.model.setItems({item});
    QCOMPARE(table.proxy.rowCount(), 1);
    table.proxy.setNeedsServiceOnly(1);
    QCOMPARE(table.proxy.needsServiceOnly(), 1);
    QCOMPARE(table.proxy.rowCount(), passes ? 1 : 0);
    table.proxy.resetFilters();
    QCOMPARE(table.proxy.needsServiceOnly(), 0);
    QCOMPARE(table.proxy.rowCount(), 1);
}

void TestMaintainanceFilterProxy::bothFiltersApplyTogether()
{
    ShownTable table;
    table.model.setItems({sodi(1), sodi(2, {open(1)}), car(3, "3", "Birel", {open(1)})});
    table.proxy.setNeedsServiceOnly(-5);
    QCOMPARE(table.carIds(), QList<int>({3, 2}));
    table.proxy.setModelFilter("Sodi", 1);
    QCOMPARE(table.carIds(), QList<int>({2}));
    table.proxy.resetFilters();
    QCOMPARE(table.carIds(), QList<int>({3, 1, 2}));
}

void TestMaintainanceFilterProxy::everyEntryOfTheCarsModelCounts()
{
    ShownTable table;
    table.reglament.list = {limitsOf("Sodi", {{1, {}, 0, 0, 100}}), limitsOf("Birel", {{1, {}, 0, 0, 1}}),
                            limitsOf("Sodi", {{1, {}, 0, 0, 10}})};
    table.model.setItems({sodi(1, {done(1, noonOf(1), 0, 0, 11)}), sodi(2, {done(1, noonOf(1), 0, 0, 10)})});
    table.proxy.setNeedsServiceOnly(1);
    QCOMPARE(table.carIds(), QList<int>({1}));
}

void TestMaintainanceFilterProxy::withoutReglamentEveryCarPasses()
{
    ShownTable table;
    table.model.setItems({sodi(1), sodi(2, {open(1)})});
    table.proxy.setNeedsServiceOnly(1);
    QCOMPARE(table.proxy.rowCount(), 1);
    table.proxy.setReglament(nullptr);
    QCOMPARE(table.proxy.rowCount(), 2);
    table.proxy.setReglament(&table.reglament);
    QCOMPARE(table.proxy.rowCount(), 1);
}

void TestMaintainanceFilterProxy::filtersRunAgainOnlyWhenTheyChange()
{
    ShownTable table;
    table.model.setItems({sodi(1, {done(1, noonOf(1))}), sodi(2)});
    table.proxy.setNeedsServiceOnly(1);
    table.proxy.setModelFilter("Sodi", 1);
    table.reglament.reads = 0;
    table.proxy.setNeedsServiceOnly(1);
    table.proxy.setModelFilter("Sodi", 3);
    table.proxy.setReglament(&table.reglament);
    QCOMPARE(table.reglament.reads, 0);
    table.proxy.refilter();
    QCOMPARE(table.reglament.reads, 2);
}

void TestMaintainanceFilterProxy::editedLimitsAreSeenAfterRefiltering()
{
    ShownTable table;
    table.reglament.list = {limitsOf("Sodi", {{1, {}, 0, 0, 50}})};
    table.model.setItems({sodi(1, {done(1, noonOf(1), 0, 0, 30)})});
    table.proxy.setNeedsServiceOnly(1);
    QCOMPARE(table.proxy.rowCount(), 0);
    table.reglament.list[0].limits[1].limits.laps = 29;
    table.proxy.refilter();
    QCOMPARE(table.proxy.rowCount(), 1);
}

void TestMaintainanceFilterProxy::aHeaderClickSortsTheTable()
{
    ShownTable table;
    table.model.setItems({sodi(10, {done(2, noonOf(3))}), sodi(9), sodi(8, {done(2, noonOf(5))})});
    table.show();
    QCOMPARE(table.carIds(), QList<int>({8, 9, 10}));
    const auto click = [&table](int column) {
        const QHeaderView *header = table.view.header();
        const QPoint at(header->sectionViewportPosition(column) + 20, header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    };
    click(4);
    QCOMPARE(table.view.header()->sortIndicatorSection(), 4);
    QCOMPARE(table.carIds(), QList<int>({10, 8, 9}));
    QCOMPARE(table.model.itemAt(0).carId, 10);
    click(4);
    QCOMPARE(table.carIds(), QList<int>({8, 10, 9}));
    QCOMPARE(table.model.itemAt(0).carId, 8);
    QCOMPARE(table.proxy.sortColumn(), -1);
}

void TestMaintainanceFilterProxy::anotherModelIsShownWhole()
{
    QStringListModel list({"b", "a"});
    MaintainanceFilterProxy proxy;
    proxy.sort(0);
    proxy.setNeedsServiceOnly(1);
    proxy.setModelFilter("a", 1);
    QCOMPARE(proxy.rowCount(), 0);
    proxy.setSourceModel(&list);
    QCOMPARE(proxy.rowCount(), 2);
    proxy.sort(0, Qt::AscendingOrder);
    QCOMPARE(list.stringList().at(0), "a");
}

void TestMaintainanceFilterProxy::aTableThatIsGoneLeavesNoRows()
{
    MaintainanceFilterProxy proxy;
    QTreeView view;
    view.setModel(&proxy);
    {
        MaintainanceModel model;
        model.setItems({sodi(1)});
        proxy.setMaintainanceModel(&model);
        QCOMPARE(proxy.rowCount(), 1);
    }
    QCOMPARE(proxy.rowCount(), 0);
    proxy.sort(1);
    proxy.setModelFilter("Sodi", 1);
    proxy.refilter();
    QCOMPARE(proxy.rowCount(), 0);
    MaintainanceModel other;
    other.setItems({sodi(1), car(2, "2", "Birel")});
    proxy.setMaintainanceModel(&other);
    QCOMPARE(proxy.rowCount(), 1);
}

void TestMaintainanceFilterProxy::positionsAreRenumberedByTheFilter()
{
    ShownTable table(ShownTable::OfTheProxy);
    table.model.setItems({sodi(1), sodi(2, {open(1)}), sodi(3, {open(1)})});
    QCOMPARE(table.proxy.index(2, 0).data().toInt(), 3);
    table.proxy.setNeedsServiceOnly(1);
    QCOMPARE(table.proxy.index(0, 0).data().toInt(), 1);
    QCOMPARE(table.proxy.index(1, 0).data().toInt(), 2);
    QCOMPARE(table.proxy.index(0, 2).data().toString(), "2");
}

void TestMaintainanceFilterProxy::currentAndSelectionFollowTheirCars()
{
    ShownTable table;
    table.model.setItems({sodi(1), sodi(2), sodi(3), sodi(4)});
    table.show();
    table.view.setCurrentIndex(table.indexOfCar(3, 4));
    QItemSelectionModel *selection = table.view.selectionModel();
    const auto row = QItemSelectionModel::Select | QItemSelectionModel::Rows;
    selection->select(table.indexOfCar(1, 0), row | QItemSelectionModel::Clear);
    selection->select(table.indexOfCar(3, 0), row);
    const auto selectedCars = [&] {
        QList<int> result;
        for (const QModelIndex &index : selection->selectedRows())
            result.append(table.carIdOf(index));
        std::sort(result.begin(), result.end());
        return result;
    };
    QCOMPARE(selectedCars(), QList<int>({1, 3}));

    table.view.sortByColumn(1, Qt::DescendingOrder);
    QCOMPARE(table.carIdOf(table.view.currentIndex()), 3);
    QCOMPARE(selectedCars(), QList<int>({1, 3}));

    table.model.setItems({sodi(7), sodi(3), sodi(6), sodi(5), sodi(1), sodi(8)});
    QCOMPARE(table.carIdOf(table.view.currentIndex()), 3);
    QCOMPARE(table.view.currentIndex().column(), 4);
    QCOMPARE(selectedCars(), QList<int>({1, 3}));

    table.model.setItems({sodi(1), sodi(8)});
    QVERIFY(!table.view.currentIndex().isValid());
    QCOMPARE(selectedCars(), QList<int>({1}));

    table.model.setItems({});
    QVERIFY(!selection->hasSelection());
    table.model.setItems({sodi(1), sodi(8)});
    QVERIFY(!selection->hasSelection());
}

void TestMaintainanceFilterProxy::removedColumnsInvalidateTheirIndexes()
{
    ShownTable table;
    table.model.setItems({sodi(1), sodi(2)});
    table.show();
    table.setOperations({1, 2, 3, 4, 5});
    table.view.setCurrentIndex(table.indexOfCar(2, 2));
    const QPersistentModelIndex number = table.view.currentIndex();
    const QPersistentModelIndex third = table.indexOfCar(2, 5);
    QCOMPARE(table.proxy.columnCount(), 8);

    table.setOperations({1, 2});
    QCOMPARE(table.proxy.columnCount(), 5);
    QCOMPARE(table.view.header()->count(), 5);
    QVERIFY(!number.isValid());
    QVERIFY(!table.view.currentIndex().isValid());
    QCOMPARE(third.column(), 2);
    QCOMPARE(table.model.columnKey(third.column()), "OP_3");
    table.view.grab();
}

void TestMaintainanceFilterProxy::filtersSetDuringARefillHoldAfterIt()
{
    ShownTable table;
    table.model.setItems({sodi(1), sodi(2), sodi(3), car(4, "4", "Birel")});
    table.show();
    table.view.setCurrentIndex(table.indexOfCar(3, 1));
    QSignalSpy inserted(&table.proxy, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&table.proxy, &QAbstractItemModel::rowsRemoved);
    {
        const ClearbackgroundTableModel::LayoutChange change(table.model);
        table.proxy.setModelFilter("Birel", 1);
        table.model.setItems({car(5, "5", "Birel"), sodi(3)});
        table.proxy.setModelFilter("Sodi", 1);
        table.proxy.setNeedsServiceOnly(0);
    }
    QCOMPARE(table.carIds(), QList<int>({3}));
    QCOMPARE(table.carIdOf(table.view.currentIndex()), 3);
    QCOMPARE(inserted.count() + removed.count(), 0);
    table.proxy.resetFilters();
    QCOMPARE(table.proxy.rowCount(), 2);
    QCOMPARE(inserted.count(), 1);
}

void TestMaintainanceFilterProxy::aRecordedServiceShowsAtOnce()
{
    ShownTable table;
    table.model.setItems({sodi(1, {done(2, noonOf(1), 0, 0, 9)}), sodi(2)});
    table.proxy.setModelFilter("Sodi", 1);
    table.show();
    const QPersistentModelIndex cell = table.indexOfCar(1, 4);
    QSignalSpy changed(&table.proxy, &QAbstractItemModel::dataChanged);
    table.model.recordServiceDone(1, 2, noonOf(2), table.proxy.mapToSource(cell));
    QCOMPARE(changed.count(), 1);
    QVERIFY(cell.data().toString().startsWith("02.05.2024 12:00\n"));
}

void TestMaintainanceFilterProxy::aTableSelectedWholeSurvivesRefills()
{
    ShownTable table;
    const auto cars = [](int first, int last) {
        QList<MaintainanceItem> result;
        for (int carId = first; carId <= last; ++carId)
            result.append(sodi(carId));
        return result;
    };
    table.show();
    for (const QList<MaintainanceItem> &refill :
         {cars(2, 250), cars(200, 210), cars(500, 510), cars(1, 400), QList<MaintainanceItem>()}) {
        table.model.setItems(cars(1, 300));
        table.view.selectAll();
        table.view.setCurrentIndex(table.proxy.index(299, 5));
        table.view.selectAll();
        table.model.setItems(refill);
        for (const QModelIndex &index : table.view.selectionModel()->selectedIndexes()) {
            QVERIFY(index.row() < table.proxy.rowCount());
            QVERIFY(table.carIdOf(index) <= 300); // no car that was added later
        }
        QCOMPARE(table.view.currentIndex().isValid(), refill.size() == 400);
        table.view.grab();
    }
}

void TestMaintainanceFilterProxy::nothingDanglesInRandomRefills_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("positions");
    for (quint32 seed = 1; seed <= 4; ++seed) {
        QTest::addRow("seed %u", seed) << seed << int(ShownTable::OfTheTable);
        QTest::addRow("seed %u, renumbered", seed) << seed << int(ShownTable::OfTheProxy);
    }
}

void TestMaintainanceFilterProxy::nothingDanglesInRandomRefills()
{
    QFETCH(quint32, seed);
    QFETCH(int, positions);
    QRandomGenerator random(seed);
    ShownTable table(static_cast<ShownTable::Positions>(positions));
    table.reglament.list = {limitsOf("Sodi", {{1, {}, 1, 0, 0}, {2, {}, 0, 1, 0}}),
                            limitsOf("Birel", {{1, {}, 0, 0, 1}})};
    table.show();
    const auto randomCars = [&random] {
        QList<MaintainanceItem> cars;
        for (int carId = 1; carId <= 30; ++carId) {
            if (random.bounded(3) > 0)
                cars.append(randomCar(random, carId));
        }
        std::shuffle(cars.begin(), cars.end(), random);
        return random.bounded(15) == 0 ? QList<MaintainanceItem>() : cars;
    };
    const auto randomOperations = [&random] {
        QList<int> opIds;
        for (int opId = 1; opId <= 6; ++opId) {
            if (random.bounded(2) == 0)
                opIds.append(opId);
        }
        return opIds;
    };
    QItemSelectionModel *selection = table.view.selectionModel();
    for (int step = 0; step < 160; ++step) {
        const QPersistentModelIndex current = table.view.currentIndex();
        const int carId = table.carIdOf(current);
        switch (random.bounded(8)) {
        case 0:
            table.model.setItems(randomCars());
            break;
        case 1:
            table.setOperations(randomOperations());
            break;
        case 2: {
            const ClearbackgroundTableModel::LayoutChange change(table.model);
            const Reglament columns = Reglament::ofOperations(randomOperations());
            table.model.updateColumns(&columns, &table.view);
            table.proxy.setNeedsServiceOnly(random.bounded(2));
            table.model.setItems(randomCars());
            break;
        }
        case 3:
            table.proxy.setModelFilter("Sodi", random.bounded(2));
            break;
        case 4:
            table.proxy.setNeedsServiceOnly(random.bounded(2));
            break;
        case 5:
            table.view.sortByColumn(random.bounded(8), Qt::SortOrder(random.bounded(2)));
            break;
        case 6:
            table.model.setSortMode(random.bounded(5));
            break;
        default:
            selection->setCurrentIndex(table.proxy.index(random.bounded(30), random.bounded(8)),
                                       random.bounded(2) == 0 ? QItemSelectionModel::SelectCurrent
                                                              : QItemSelectionModel::Select);
            continue;
        }
        if (current.isValid()) {
            QVERIFY(current.row() < table.proxy.rowCount());
            QVERIFY(current.column() < table.proxy.columnCount());
            QCOMPARE(table.carIdOf(current), carId);
        }
        for (const QModelIndex &index : selection->selectedIndexes())
            QVERIFY(index.row() < table.proxy.rowCount() && index.column() < table.proxy.columnCount());
        for (int row = 0; row < table.proxy.rowCount(); ++row) {
            const MaintainanceItem &item =
                table.model.itemAt(table.proxy.mapToSource(table.proxy.index(row, 0)).row());
            QVERIFY(table.proxy.modelFilter().isEmpty() || item.model == table.proxy.modelFilter());
        }
        if (step % 4 == 0)
            table.view.grab();
    }
}

void TestMaintainanceFilterProxy::filteringManyCarsReadsTheLimitsOncePerCar()
{
    ShownTable table;
    QRandomGenerator random(7);
    QList<MaintainanceItem> cars;
    for (int carId = 1; carId <= 2000; ++carId)
        cars.append(randomCar(random, carId));
    table.model.setItems(cars);
    QCOMPARE(table.proxy.rowCount(), 2000);

    table.reglament.reads = 0;
    table.proxy.setNeedsServiceOnly(1);
    QCOMPARE(table.reglament.reads, 2000);
    table.proxy.setModelFilter("no such model", 1);
    QCOMPARE(table.reglament.reads, 2000); // the cheaper test comes first
    QCOMPARE(table.proxy.rowCount(), 0);
}

void TestMaintainanceFilterProxy::sortingManyCarsAsksForNoCells()
{
    class CountingProxy final : public QIdentityProxyModel
    {
    public:
        QVariant data(const QModelIndex &index, int role) const override
        {
            ++dataCalls;
            return QIdentityProxyModel::data(index, role);
        }
        mutable int dataCalls = 0;
    };
    MaintainanceModel model;
    MaintainanceFilterProxy proxy;
    proxy.setMaintainanceModel(&model);
    CountingProxy counter;
    counter.setSourceModel(&proxy);
    Reglament reglament = Reglament::ofOperations({1, 2, 3});
    proxy.setReglament(&reglament);
    model.updateColumns(&reglament, nullptr);
    QRandomGenerator random(8);
    QList<MaintainanceItem> cars;
    for (int carId = 1; carId <= 2000; ++carId)
        cars.append(randomCar(random, carId));
    model.setItems(cars);
    proxy.setNeedsServiceOnly(1);
    proxy.sort(0);
    const int shown = counter.rowCount();

    QSignalSpy relayouts(&counter, &QAbstractItemModel::layoutChanged);
    reglament.reads = 0;
    proxy.sort(3, Qt::DescendingOrder);
    QCOMPARE(counter.rowCount(), shown);
    QCOMPARE(relayouts.count(), 1);
    QCOMPARE(counter.dataCalls, 0);
    QCOMPARE(reglament.reads, 2000); // filtered again once
}

GARAGE_TEST(TestMaintainanceFilterProxy)
#include "tst_maintainancefilterproxy.moc"
