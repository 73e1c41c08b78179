#include "models/cellflags.h"
#include "models/columnwidthguard.h"
#include "models/maintainancemodel.h"
#include "support/garagetest.h"
#include "support/maintainancesample.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTreeView>

using namespace MaintainanceSample;

Q_DECLARE_METATYPE(OperationStat)

namespace {

const QColor attention(255, 127, 127);

class ChangeableModel
{
public:
    ChangeableModel() : tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal) { }

    void setOperations(const QList<int> &opIds)
    {
        const Reglament reglament = Reglament::ofOperations(opIds);
        const ClearbackgroundTableModel::LayoutChange change(model);
        model.updateColumns(&reglament, nullptr);
    }
    QString keys() const
    {
        QStringList result;
        for (int column = 0; column < model.columnCount(); ++column)
            result.append(model.columnKey(column));
        return result.join(' ');
    }
    QString titles() const
    {
        QStringList result;
        for (int column = 0; column < model.columnCount(); ++column)
            result.append(model.headerData(column, Qt::Horizontal).toString());
        return result.join('|');
    }
    QList<int> carIds() const
    {
        QList<int> result;
        for (int row = 0; row < model.rowCount(); ++row)
            result.append(model.itemAt(row).carId);
        return result;
    }
    MaintainanceModel model;
    QAbstractItemModelTester tester;
};

/// Shows the rows backwards.
class BackwardsProxy final : public QSortFilterProxyModel
{
protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override
    {
        return left.row() > right.row();
    }
};

} // namespace

/// The maintenance table: what its cells show and offer, its columns, its records.
class TestMaintainanceModel : public GarageTest
{
    Q_OBJECT
private slots:
    void startsWithThreeColumnsAndNoRows();
    void carCellsShowNumberAndModel();
    void operationCellsShowTheDateAndWhatWasDrivenSince_data();
    void operationCellsShowTheDateAndWhatWasDrivenSince();
    void carCellsOfCarsWithOpenWorkAreTinted();
    void cellsOfferServiceOrAttention();
    void thePositionCountsTheRowsOfTheProxy();
    void nothingOutOfRangeIsAnswered();

    void operationColumnsAreThoseOfTheFirstEntry();
    void renamedOperationColumnsKeepTheirWidth();
    void fewerOperationsRemoveColumnsFromTheirCountOn();
    void withoutEntriesTheColumnsStay();
    void anOperationWithTheIdOfNoneHasAnEmptyColumn();
    void onlyNewColumnsGetAWidthInTheView();

    void refillsAnnounceOneLayoutChange();
    void refillsAreCopies();
    void indexesFollowTheirCarAndColumn();
    void itemByIdIsTheFirstOfThatCar();

    void aServiceMovesTheDateForward_data();
    void aServiceMovesTheDateForward();
    void aServiceOfANewOperationIsDoneWork();
    void aServiceReachesEveryItemOfTheCar();
    void aServiceAnnouncesTheClickedCellAlone();
};

void TestMaintainanceModel::startsWithThreeColumnsAndNoRows()
{
    ChangeableModel table;
    QCOMPARE(table.model.rowCount(), 0);
    QCOMPARE(table.keys(), "POS MODEL NUM");
    QCOMPARE(table.titles(), "#|Модель|Номер");
    table.model.setItems({car(1, "7", "Sodi")});
    QTreeView view;
    view.header()->setStretchLastSection(false);
    view.setModel(&table.model);
    table.model.applyColumnWidths(&view);
    const int widths[] = {40, 80, 60};
    const int alignments[] = {130, 129, 130};
    for (int column = 0; column < 3; ++column) {
        QCOMPARE(view.columnWidth(column), widths[column]);
        QCOMPARE(table.model.index(0, column).data(Qt::TextAlignmentRole).toInt(), alignments[column]);
        QCOMPARE(table.model.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt(), 132);
    }
}

void TestMaintainanceModel::carCellsShowNumberAndModel()
{
    ChangeableModel table;
    table.model.setItems({car(1, "07 A", "Sodi RX")});
    QCOMPARE(table.model.index(0, 0).data(), QVariant(1));
    QCOMPARE(table.model.index(0, 1).data(), QVariant("Sodi RX"));
    QCOMPARE(table.model.index(0, 2).data(), QVariant("07 A"));
    QVERIFY(!table.model.index(0, 1).data(Qt::ToolTipRole).isValid());
    QVERIFY(!table.model.index(0, 1).data(Qt::EditRole).isValid());
}

void TestMaintainanceModel::operationCellsShowTheDateAndWhatWasDrivenSince_data()
{
    QTest::addColumn<QList<OperationStat>>("stats");
    QTest::addColumn<QString>("text");
    const QDateTime date(QDate(2024, 2, 9), QTime(8, 5, 59));
    const auto row = [](const char *name, const QList<OperationStat> &stats, const char *text) {
        QTest::newRow(name) << stats << text;
    };
    row("never recorded", {}, "");
    row("another operation", {done(8, date, 1, 1, 1)}, "");
    row("without a date", {done(7, {}, 5400, 3, 41)}, "");
    row("nothing driven", {done(7, date)}, "09.02.2024 08:05");
    row("all counters", {done(7, date, 5400, 3, 41)}, "09.02.2024 08:05\n1.5 ч., 3 з., 41 кр.");
    row("time only", {done(7, date, 1)}, "09.02.2024 08:05\n0.0 ч., 0 з., 0 кр.");
    row("runs only", {done(7, date, 0, 1)}, "09.02.2024 08:05\n0.0 ч., 1 з., 0 кр.");
    row("laps only", {done(7, date, 0, 0, 1)}, "09.02.2024 08:05\n0.0 ч., 0 з., 1 кр.");
    row("much", {done(7, date, 3600000, 12345, 678901)}, "09.02.2024 08:05\n1000.0 ч., 12345 з., 678901 кр.");
}

void TestMaintainanceModel::operationCellsShowTheDateAndWhatWasDrivenSince()
{
    QFETCH(QList<OperationStat>, stats);
    QFETCH(QString, text);
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Russian)); // where the decimal point of a number is a comma
    ChangeableModel table;
    table.setOperations({7});
    table.model.setItems({car(1, "1", "Sodi", stats)});
    const QVariant shown = table.model.index(0, 3).data();
    QLocale::setDefault(before);
    QCOMPARE(shown, QVariant(text));
    QCOMPARE(table.model.shownOperation(table.model.index(0, 3)) != nullptr, !text.isEmpty());
}

void TestMaintainanceModel::carCellsOfCarsWithOpenWorkAreTinted()
{
    ChangeableModel table;
    table.setOperations({7});
    table.model.setItems({car(1, "1", "Sodi"), car(2, "2", "Sodi", {done(7, noonOf(1))}),
                          car(3, "3", "Sodi", {open(complaintOperationId), done(7, noonOf(1))})});
    const auto background = [&table](int row, int column) {
        return table.model.index(row, column).data(Qt::BackgroundRole).value<QBrush>();
    };
    for (int column = 0; column < 4; ++column) {
        const bool isCarColumn = column == 1 || column == 2;
        QCOMPARE(background(0, column), QBrush(Qt::transparent));
        QCOMPARE(background(1, column), QBrush(Qt::transparent));
        QCOMPARE(background(2, column), isCarColumn ? QBrush(attention) : QBrush(Qt::transparent));
    }
}

void TestMaintainanceModel::cellsOfferServiceOrAttention()
{
    ChangeableModel table;
    table.setOperations({7});
    table.model.setItems({car(1, "1", "Sodi")});
    const int plain = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    const auto flags = [&table](int column) { return int(table.model.flags(table.model.index(0, column))); };
    QCOMPARE(flags(0), plain | CellFlags::service);
    QCOMPARE(flags(1), plain | CellFlags::attention);
    QCOMPARE(flags(2), plain | CellFlags::attention);
    QCOMPARE(flags(3), plain | CellFlags::service);
    QCOMPARE(CellFlags::service, 0x10000);
    QCOMPARE(CellFlags::attention, 0x20000);
}

void TestMaintainanceModel::thePositionCountsTheRowsOfTheProxy()
{
    ChangeableModel table;
    table.model.setItems({car(1, "1", "Sodi"), car(2, "2", "Sodi"), car(3, "3", "Birel")});
    {
        BackwardsProxy proxy;
        proxy.setSourceModel(&table.model);
        proxy.QSortFilterProxyModel::sort(1);
        proxy.setFilterKeyColumn(1);
        proxy.setFilterFixedString("Sodi");
        table.model.setRowNumberProxy(&proxy);
        QCOMPARE(proxy.rowCount(), 2);
        QCOMPARE(table.model.index(0, 0).data().toInt(), 2);
        QCOMPARE(table.model.index(1, 0).data().toInt(), 1);
        proxy.setFilterFixedString("Birel");
        QCOMPARE(table.model.index(2, 0).data().toInt(), 1);
        proxy.setSourceModel(nullptr);
        QCOMPARE(table.model.index(2, 0).data().toInt(), 3);
    }
    QCOMPARE(table.model.index(2, 0).data().toInt(), 3);
}

void TestMaintainanceModel::nothingOutOfRangeIsAnswered()
{
    ChangeableModel table;
    table.setOperations({1, 2, 3, 7});
    const MaintainanceItem item = car(1, "1", "Sodi", {open(7, noonOf(1))});
    table.model.setItems({item, item});
    QModelIndexList stale;
    for (const QPoint &at : {QPoint(0, 1), QPoint(1, 1), QPoint(2, 1), QPoint(4, 0), QPoint(6, 0)})
        stale.append(table.model.index(at.y(), at.x()));
    table.setOperations({});
    table.setOperations({7});
    QCOMPARE(table.keys(), "OP_2 OP_3 OP_7 OP_7");
    table.model.setItems({item});
    for (const QModelIndex &cell : qAsConst(stale)) {
        QVERIFY(!cell.data().isValid());
        QVERIFY(cell.data(Qt::BackgroundRole).value<QBrush>() != QBrush(attention));
        QVERIFY((int(cell.flags()) & (CellFlags::service | CellFlags::attention)) == 0);
        QVERIFY(!table.model.shownOperation(cell));
    }
    QVERIFY(!table.model.data({}).isValid());
    QVERIFY(!table.model.shownOperation({}));
    for (int column : {-1, 4, 900})
        QVERIFY(!table.model.operationOfColumn(column));
    QCOMPARE(table.model.operationOfColumn(3), std::optional<int>(7));
    for (int column : {-2, -1, 4, 900, -1, 3})
        table.model.sort(column, Qt::DescendingOrder);
    QCOMPARE(table.carIds(), QList<int>({1}));
}

void TestMaintainanceModel::operationColumnsAreThoseOfTheFirstEntry()
{
    ChangeableModel table;
    Reglament reglament = Reglament::ofOperations({12, 3, 7});
    reglament.list.append(Reglament::ofOperations({1, 2, 3, 4, 5}).list);
    table.model.setItems({car(1, "1", "Sodi")});
    {
        const ClearbackgroundTableModel::LayoutChange change(table.model);
        table.model.updateColumns(&reglament, nullptr);
    }
    QCOMPARE(table.keys(), "POS MODEL NUM OP_3 OP_7 OP_12");
    QCOMPARE(table.titles(), "#|Модель|Номер|Operation 3|Operation 7|Operation 12");
    for (int column = 3; column < 6; ++column) {
        QCOMPARE(table.model.index(0, column).data(Qt::TextAlignmentRole).toInt(), 2);
        QCOMPARE(table.model.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt(), 132);
    }
}

void TestMaintainanceModel::renamedOperationColumnsKeepTheirWidth()
{
    ChangeableModel table;
    table.setOperations({3, 7});
    table.model.setItems({car(1, "1", "Sodi", {done(3, noonOf(3)), done(5, noonOf(5))})});
    QCOMPARE(table.model.index(0, 3).data(), QVariant("03.05.2024 12:00"));
    table.setOperations({5, 7});
    QCOMPARE(table.keys(), "POS MODEL NUM OP_5 OP_7");
    QCOMPARE(table.model.index(0, 3).data(), QVariant("05.05.2024 12:00"));
}

void TestMaintainanceModel::fewerOperationsRemoveColumnsFromTheirCountOn()
{
    ChangeableModel table;
    table.setOperations({1, 2, 3, 4, 5});
    table.model.setItems({car(1, "9", "Sodi", {done(3, noonOf(3)), open(4, noonOf(4))}),
                          car(2, "8", "Sodi", {done(3, noonOf(9)), open(4, noonOf(5))})});
    table.model.sort(0);
    table.setOperations({1, 2});
    QCOMPARE(table.keys(), "POS MODEL OP_3 OP_4 OP_5");
    QCOMPARE(table.model.index(0, 3).data(), QVariant("05.05.2024 12:00"));
    QCOMPARE(table.model.index(0, 1).data(Qt::BackgroundRole).value<QBrush>(), QBrush(attention));
    QCOMPARE(table.model.index(0, 2).data(Qt::BackgroundRole).value<QBrush>(), QBrush(Qt::transparent));

    table.model.sort(3);
    QCOMPARE(table.carIds(), QList<int>({1, 2}));
    table.model.sort(2); // by model and number, also without the number's column
    QCOMPARE(table.carIds(), QList<int>({2, 1}));

    table.setOperations({1, 2});
    QCOMPARE(table.keys(), "POS MODEL OP_3 OP_1 OP_2");
    table.setOperations({});
    QCOMPARE(table.keys(), "OP_3 OP_1 OP_2");
    table.setOperations({6});
    QCOMPARE(table.keys(), "OP_3 OP_1 OP_2 OP_6");
}

void TestMaintainanceModel::withoutEntriesTheColumnsStay()
{
    ChangeableModel table;
    table.setOperations({1});
    table.model.updateColumns(nullptr, nullptr);
    const Reglament empty;
    table.model.updateColumns(&empty, nullptr);
    QCOMPARE(table.keys(), "POS MODEL NUM OP_1");
}

void TestMaintainanceModel::anOperationWithTheIdOfNoneHasAnEmptyColumn()
{
    ChangeableModel table;
    table.setOperations({noId, 7});
    table.model.setItems({car(1, "1", "Sodi", {done(noId, noonOf(1)), done(7, noonOf(2))})});
    QCOMPARE(table.keys(), "POS MODEL NUM OP_-1 OP_7");
    QCOMPARE(table.model.index(0, 3).data().toString(), QString());
    QCOMPARE(table.model.index(0, 4).data().toString(), "02.05.2024 12:00");
}

void TestMaintainanceModel::onlyNewColumnsGetAWidthInTheView()
{
    ChangeableModel table;
    table.setOperations({1});
    QTreeView view;
    view.header()->setStretchLastSection(false);
    view.setModel(&table.model);
    table.model.applyColumnWidths(&view);
    QCOMPARE(view.columnWidth(3), 160);
    view.setColumnWidth(3, 99);
    const Reglament reglament = Reglament::ofOperations({1, 2});
    {
        const ColumnWidthGuard guard(&view, table.model);
        const ClearbackgroundTableModel::LayoutChange change(table.model);
        table.model.updateColumns(&reglament, &view);
    }
    QCOMPARE(view.columnWidth(3), 99);
    QCOMPARE(view.columnWidth(4), 160);
}

void TestMaintainanceModel::refillsAnnounceOneLayoutChange()
{
    ChangeableModel table;
    QSignalSpy before(&table.model, &QAbstractItemModel::layoutAboutToBeChanged);
    QSignalSpy after(&table.model, &QAbstractItemModel::layoutChanged);
    QSignalSpy reset(&table.model, &QAbstractItemModel::modelReset);
    table.model.setItems({car(1, "1", "Sodi")});
    QCOMPARE(after.count(), 1);
    table.model.setItems({});
    table.model.setSortMode(MaintainanceModel::SortByLaps);
    table.model.sort(1);
    table.model.sort(1);
    QCOMPARE(before.count(), 5);
    QCOMPARE(after.count(), 5);
    QCOMPARE(reset.count(), 0);
}

void TestMaintainanceModel::refillsAreCopies()
{
    ChangeableModel table;
    const QList<MaintainanceItem> items {car(1, "1", "Sodi")};
    table.model.setItems(items);
    table.model.itemById(1)->num = "changed";
    QCOMPARE(items.at(0).num, "1");
    QCOMPARE(table.model.index(0, 2).data().toString(), "changed");
}

void TestMaintainanceModel::indexesFollowTheirCarAndColumn()
{
    ChangeableModel table;
    table.setOperations({1, 2});
    const MaintainanceItem a = car(1, "10", "Sodi");
    const MaintainanceItem b = car(2, "9", "Sodi");
    const MaintainanceItem c = car(3, "1", "Birel");
    table.model.setItems({a, b});
    const QPersistentModelIndex number = table.model.index(0, 2);
    const QPersistentModelIndex first = table.model.index(1, 3);
    table.model.sort(0);
    QCOMPARE(number.row(), 1);
    QCOMPARE(first.row(), 0);
    table.model.setItems({a, c, b});
    QCOMPARE(number.row(), 2);
    QCOMPARE(first.row(), 1);
    table.model.setItems({c, a});
    QCOMPARE(number.row(), 1);
    QVERIFY(!first.isValid());
    table.setOperations({1}); // hides the model's column
    QCOMPARE(number.column(), 1);
    const QPersistentModelIndex position = table.model.index(0, 0);
    table.setOperations({}); // hides the position's
    QVERIFY(!position.isValid());
    QCOMPARE(number.column(), 0);
}

void TestMaintainanceModel::itemByIdIsTheFirstOfThatCar()
{
    ChangeableModel table;
    table.model.setItems({car(5, "1", "Sodi"), car(5, "2", "Sodi")});
    QCOMPARE(table.model.itemById(5)->num, "1");
    QVERIFY(!table.model.itemById(6));
    QVERIFY(!table.model.itemById(noId));
}

void TestMaintainanceModel::aServiceMovesTheDateForward_data()
{
    QTest::addColumn<QDateTime>("before");
    QTest::addColumn<QDateTime>("doneAt");
    QTest::addColumn<QDateTime>("after");
    QTest::newRow("later") << noonOf(1) << noonOf(2) << noonOf(2);
    QTest::newRow("one second later") << noonOf(1) << noonOf(1).addSecs(1) << noonOf(1).addSecs(1);
    QTest::newRow("equal") << noonOf(1) << noonOf(1) << noonOf(1);
    QTest::newRow("earlier") << noonOf(2) << noonOf(1) << noonOf(2);
    QTest::newRow("one second earlier") << noonOf(1).addSecs(1) << noonOf(1) << noonOf(1).addSecs(1);
    QTest::newRow("never before") << QDateTime() << noonOf(1) << noonOf(1);
    QTest::newRow("no date") << noonOf(1) << QDateTime() << noonOf(1);
}

void TestMaintainanceModel::aServiceMovesTheDateForward()
{
    QFETCH(QDateTime, before);
    QFETCH(QDateTime, doneAt);
    QFETCH(QDateTime, after);
    ChangeableModel table;
    OperationStat stat = open(7, before);
    stat.laps = 41;
    table.model.setItems({car(1, "1", "Sodi", {stat})});
    table.model.recordServiceDone(1, 7, doneAt, {});
    const OperationStat result = table.model.itemAt(0).operation(7);
    QCOMPARE(result.lastDone.toLocalTime(), after);
    QCOMPARE(result.laps, 41);
    QCOMPARE(result.state, int(OpenState));
}

void TestMaintainanceModel::aServiceOfANewOperationIsDoneWork()
{
    ChangeableModel table;
    table.model.setItems({car(1, "1", "Sodi")});
    table.model.recordServiceDone(1, 7, QDateTime(), {});
    QVERIFY(table.model.itemAt(0).ops.isEmpty());
    table.model.recordServiceDone(2, 7, noonOf(3), {});
    QVERIFY(table.model.itemAt(0).ops.isEmpty());
    table.model.recordServiceDone(1, 7, noonOf(3), {});
    const OperationStat result = table.model.itemAt(0).operation(7);
    QCOMPARE(result.opId, 7);
    QCOMPARE(result.state, int(DoneState));
    QCOMPARE(result.lastDone.toLocalTime(), noonOf(3));
    QVERIFY(!table.model.itemAt(0).hasOpenOperation());
}

void TestMaintainanceModel::aServiceReachesEveryItemOfTheCar()
{
    ChangeableModel table;
    table.model.setItems({car(1, "1", "Sodi", {done(7, noonOf(1))}),
                          car(2, "2", "Sodi", {done(7, noonOf(1))}),
                          car(1, "1", "Sodi", {done(7, noonOf(5))})});
    table.model.recordServiceDone(1, 7, noonOf(3), {});
    QCOMPARE(table.model.itemAt(0).operation(7).lastDone.toLocalTime(), noonOf(3));
    QCOMPARE(table.model.itemAt(1).operation(7).lastDone.toLocalTime(), noonOf(1));
    QCOMPARE(table.model.itemAt(2).operation(7).lastDone.toLocalTime(), noonOf(3));
}

void TestMaintainanceModel::aServiceAnnouncesTheClickedCellAlone()
{
    ChangeableModel table;
    table.model.setItems({car(1, "1", "Sodi", {done(7, noonOf(1))})});
    QSignalSpy changed(&table.model, &QAbstractItemModel::dataChanged);
    const QModelIndex clicked = table.model.index(0, 1);
    table.model.recordServiceDone(1, 7, noonOf(3), clicked);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().at(0).toModelIndex(), clicked);
    QCOMPARE(changed.first().at(1).toModelIndex(), clicked);

    // An earlier date changes nothing; the cell is announced as well.
    table.model.recordServiceDone(1, 7, noonOf(2), clicked);
    QCOMPARE(table.model.itemAt(0).operation(7).lastDone.toLocalTime(), noonOf(3));
    QCOMPARE(changed.count(), 2);

    table.model.recordServiceDone(1, 7, noonOf(4), {});
    QCOMPARE(table.model.itemAt(0).operation(7).lastDone.toLocalTime(), noonOf(4));
    QCOMPARE(changed.count(), 2);
}

GARAGE_TEST(TestMaintainanceModel)
#include "tst_maintainancemodel.moc"
