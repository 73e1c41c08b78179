#include "models/servicelogfilter.h"
#include "models/servicelogmodel.h"
#include "support/garagetest.h"
#include "support/positionlessproxy.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QRandomGenerator>
#include <QTreeView>

#include <algorithm>

namespace {

using LogItems = QList<ServiceLogItem>;

ServiceLogItem record(int id, const QString &model, const QString &number, int opId = 4,
                      int state = DoneState)
{
    ServiceLogItem item;
    item.id = id;
    item.model = model;
    item.num = number;
    item.opId = opId;
    item.state = state;
    item.comment = QString::number(id);
    return item;
}

ServiceLogItem randomRecord(QRandomGenerator &random, int id)
{
    const QStringList models {QString(), "Kart", "kart", "Kart 2"};
    const QStringList numbers {QString(), "1", "12a", "A112", "Б2"};
    ServiceLogItem item =
        record(id, models.at(random.bounded(models.size())), numbers.at(random.bounded(numbers.size())),
               random.bounded(-1, 3), random.bounded(2));
    item.opTime = QDateTime(QDate(2026, 1, 1), QTime(0, 0)).addDays(random.bounded(400));
    item.opName = QString("op %1").arg(item.opId);
    item.personName = QString("person %1").arg(random.bounded(5));
    return item;
}

/// A log and its filter, filled as the window fills them.
struct FilteredLog
{
    FilteredLog()
    {
        filter.setSourceModel(&model);
        tested.setSourceModel(&filter);
    }
    explicit FilteredLog(const LogItems &items) : FilteredLog() { refill(items); }

    void refill(const LogItems &items)
    {
        const ClearbackgroundTableModel::LayoutChange change(model);
        model.clear();
        model.append(items);
        model.refresh();
    }
    QList<int> shownIds() const
    {
        QList<int> ids;
        for (int row = 0; row < filter.rowCount(); ++row)
            ids.append(filter.index(row, 6).data().toInt());
        return ids;
    }

    ServiceLogModel model;
    ServiceLogFilter filter;
    PositionlessProxy tested;
    QAbstractItemModelTester tester {&tested, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

LogItems mixedRecords()
{
    return {record(1, "Kart", "12", 4), record(2, "kart", "112", 5), record(3, "Kart", "120", 5, OpenState),
            record(4, "Sodi", "1A2", complaintOperationId, OpenState),
            record(5, QString(), QString(), complaintOperationId, DoneState)};
}

} // namespace

/// Which records of the log are shown, and how they are numbered.
class TestServiceLogFilter : public GarageTest
{
    Q_OBJECT
private slots:
    void everythingPassesAtFirst();
    void recordsPassByModelNumberAndOperation_data();
    void recordsPassByModelNumberAndOperation();
    void resetLetsEverythingThroughAgain();
    void visibleRowsAreNumberedInViewOrder();
    void otherCellsAreThoseOfTheModel();
    void filtersSurviveARefill();
    void everyFilterAgreesWithTheOracle();
    void sortingIsThatOfTheShownTexts_data();
    void sortingIsThatOfTheShownTexts();
    void recordsBeyondTheShownThousandDoNotPass();
    void aViewSurvivesRefillsOfAFilteredSortedLog();
    void filtersSetDuringARefillHoldAfterIt();
    void hiddenRecordsMoveUpIntoAFilteredView();
    void anUnchangedFilterEmitsNoSignals();
    void anotherLogIsShownByTheSameFilter();
    void aFilterWithoutALogShowsNothing();
};

void TestServiceLogFilter::everythingPassesAtFirst()
{
    const FilteredLog log(mixedRecords());
    QCOMPARE(log.shownIds(), QList<int>({1, 2, 3, 4, 5}));
    QCOMPARE(log.filter.modelFilter(), QString());
    QCOMPARE(log.filter.numberFilter(), QString());
    QCOMPARE(log.filter.operationFilter(), -2);
    QCOMPARE(ServiceLogFilter::anyOperation, -2);
    QCOMPARE(ServiceLogFilter::pendingOnly, -3);
}

void TestServiceLogFilter::recordsPassByModelNumberAndOperation_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("number");
    QTest::addColumn<int>("operation");
    QTest::addColumn<QList<int>>("ids");
    const QString any;
    const QString kart = "Kart";
    QTest::newRow("a model as it is written") << kart << any << -2 << QList<int> {1, 3};
    QTest::newRow("a model in lower case") << "kart" << any << -2 << QList<int> {2};
    QTest::newRow("part of a model") << "Kar" << any << -2 << QList<int> {};
    QTest::newRow("part of a number") << any << "12" << -2 << QList<int> {1, 2, 3};
    QTest::newRow("a letter in the other case") << any << "a" << -2 << QList<int> {4};
    QTest::newRow("a pattern is plain text") << any << "1.2" << -2 << QList<int> {};
    QTest::newRow("an operation") << any << any << 5 << QList<int> {2, 3};
    QTest::newRow("complaints") << any << any << -1 << QList<int> {4, 5};
    QTest::newRow("an unknown operation") << any << any << 77 << QList<int> {};
    QTest::newRow("pending records of any operation") << any << any << -3 << QList<int> {3, 4};
    QTest::newRow("pending records of a model") << kart << any << -3 << QList<int> {3};
    QTest::newRow("pending records of a number") << any << "A2" << -3 << QList<int> {4};
    QTest::newRow("all three") << kart << "12" << 5 << QList<int> {3};
    QTest::newRow("model and number disagree") << kart << "112" << -2 << QList<int> {};
}

void TestServiceLogFilter::recordsPassByModelNumberAndOperation()
{
    QFETCH(const QString, model);
    QFETCH(const QString, number);
    QFETCH(const int, operation);
    FilteredLog log(mixedRecords());
    log.filter.setModelFilter(model);
    log.filter.setNumberFilter(number);
    log.filter.setOperationFilter(operation);
    QTEST(log.shownIds(), "ids");
    QCOMPARE(log.filter.modelFilter(), model);
    QCOMPARE(log.filter.numberFilter(), number);
    QCOMPARE(log.filter.operationFilter(), operation);
}

void TestServiceLogFilter::resetLetsEverythingThroughAgain()
{
    FilteredLog log(mixedRecords());
    log.filter.setModelFilter("Kart");
    log.filter.setNumberFilter("12");
    log.filter.setOperationFilter(ServiceLogFilter::pendingOnly);
    QCOMPARE(log.shownIds(), QList<int>({3}));
    log.filter.reset();
    QCOMPARE(log.shownIds(), QList<int>({1, 2, 3, 4, 5}));
    QCOMPARE(log.filter.modelFilter(), QString());
    QCOMPARE(log.filter.numberFilter(), QString());
    QCOMPARE(log.filter.operationFilter(), ServiceLogFilter::anyOperation);
}

void TestServiceLogFilter::visibleRowsAreNumberedInViewOrder()
{
    FilteredLog log(mixedRecords());
    log.filter.setOperationFilter(5);
    log.filter.sort(6, Qt::DescendingOrder);
    QCOMPARE(log.shownIds(), QList<int>({3, 2}));
    QCOMPARE(log.filter.index(0, 0).data(), QVariant(1));
    QCOMPARE(log.filter.index(1, 0).data(), QVariant(2));
    QCOMPARE(log.model.index(2, 0).data(), QVariant(3));
}

void TestServiceLogFilter::otherCellsAreThoseOfTheModel()
{
    FilteredLog log(mixedRecords());
    log.filter.setOperationFilter(ServiceLogFilter::pendingOnly);
    for (int column = 0; column < log.filter.columnCount(); ++column) {
        for (int role :
             {int(Qt::DisplayRole), int(Qt::BackgroundRole), int(Qt::TextAlignmentRole), int(Qt::EditRole)}) {
            if (column > 0 || role != Qt::DisplayRole) {
                QCOMPARE(log.filter.index(1, column).data(role), log.model.index(3, column).data(role));
            }
        }
    }
    QVERIFY(!log.filter.data({}).isValid());
}

void TestServiceLogFilter::filtersSurviveARefill()
{
    FilteredLog log(mixedRecords());
    log.filter.setModelFilter("Kart");
    log.refill({record(8, "Sodi", "1"), record(9, "Kart", "1")});
    QCOMPARE(log.shownIds(), QList<int>({9}));
    QCOMPARE(log.filter.index(0, 0).data(), QVariant(1));
}

void TestServiceLogFilter::everyFilterAgreesWithTheOracle()
{
    QRandomGenerator random(21);
    LogItems items;
    for (int id = 0; id < 300; ++id)
        items.append(randomRecord(random, id));
    FilteredLog log(items);
    const QStringList models {QString(), "Kart", "kart", "K"};
    const QStringList numbers {QString(), "1", "A", "б"};
    for (const QString &model : models) {
        log.filter.setModelFilter(model);
        for (const QString &number : numbers) {
            log.filter.setNumberFilter(number);
            for (int operation : {-3, -2, -1, 0, 1, 2, 9}) {
                log.filter.setOperationFilter(operation);
                QList<int> expected;
                for (const ServiceLogItem &item : qAsConst(items)) {
                    const bool modelFits = model.isEmpty() || model == item.model;
                    const bool numberFits = item.num.toUpper().indexOf(number.toUpper()) >= 0;
                    const bool operationFits = operation == -2 || (operation == -3 && item.state == 0)
                        || (operation > -2 && operation == item.opId);
                    if (modelFits && numberFits && operationFits)
                        expected.append(item.id);
                }
                QCOMPARE(log.shownIds(), expected);
            }
        }
    }
}

void TestServiceLogFilter::sortingIsThatOfTheShownTexts_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<Qt::SortOrder>("order");
    for (int column = 0; column < 7; ++column) {
        QTest::addRow("column %d ascending", column) << column << Qt::AscendingOrder;
        QTest::addRow("column %d descending", column) << column << Qt::DescendingOrder;
    }
}

void TestServiceLogFilter::sortingIsThatOfTheShownTexts()
{
    QFETCH(const int, column);
    QFETCH(const Qt::SortOrder, order);
    QRandomGenerator random(22);
    LogItems items;
    for (int id = 0; id < 200; ++id)
        items.append(randomRecord(random, id));
    FilteredLog log(items);
    log.filter.sort(column, order);

    QList<int> sourceRows;
    for (int row = 0; row < items.size(); ++row)
        sourceRows.append(row);
    // Positions are numbers, everything else is text; equal texts keep the order of the log.
    std::stable_sort(sourceRows.begin(), sourceRows.end(), [&](int left, int right) {
        if (order == Qt::DescendingOrder)
            std::swap(left, right);
        if (column == 0)
            return left < right;
        return log.model.index(left, column).data().toString()
            < log.model.index(right, column).data().toString();
    });
    QCOMPARE(log.shownIds(), sourceRows);
}

void TestServiceLogFilter::recordsBeyondTheShownThousandDoNotPass()
{
    LogItems items;
    for (int id = 0; id < 1500; ++id)
        items.append(record(id, id < 1000 ? "Kart" : "Sodi", QString()));
    FilteredLog log(items);
    QCOMPARE(log.filter.rowCount(), 1000);
    log.filter.setModelFilter("Sodi");
    QCOMPARE(log.filter.rowCount(), 0);
}

void TestServiceLogFilter::aViewSurvivesRefillsOfAFilteredSortedLog()
{
    FilteredLog log(mixedRecords());
    log.filter.setNumberFilter("12");
    QTreeView view;
    view.setModel(&log.filter);
    view.setSortingEnabled(true);
    view.header()->setSortIndicator(6, Qt::DescendingOrder);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QCOMPARE(log.shownIds(), QList<int>({3, 2, 1}));

    view.setCurrentIndex(log.filter.index(2, 3));
    log.refill({record(1, "Kart", "12"), record(7, "Kart", "12")});
    view.grab();
    QCOMPARE(log.shownIds(), QList<int>({7, 1}));
    QCOMPARE(view.currentIndex(), log.filter.index(1, 3));

    log.refill({});
    view.grab();
    QVERIFY(!view.currentIndex().isValid());
}

void TestServiceLogFilter::filtersSetDuringARefillHoldAfterIt()
{
    FilteredLog log(mixedRecords());
    QTreeView view;
    view.setModel(&log.filter);
    view.show();
    view.setCurrentIndex(log.filter.index(3, 3));
    const QPersistentModelIndex second = log.filter.index(1, 6);
    QSignalSpy inserted(&log.filter, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&log.filter, &QAbstractItemModel::rowsRemoved);
    {
        const ClearbackgroundTableModel::LayoutChange change(log.model);
        log.filter.setModelFilter("kart");
        log.model.clear();
        log.filter.setNumberFilter("9");
        log.model.append({record(4, "Sodi", "9", 4), record(2, "Sodi", "9", 5), record(6, "Sodi", "9", 5)});
        log.filter.reset();
        log.filter.setOperationFilter(5);
    }
    view.grab();
    QCOMPARE(log.shownIds(), QList<int>({2, 6}));
    QCOMPARE(second, QPersistentModelIndex(log.filter.index(0, 6)));
    QVERIFY(!view.currentIndex().isValid());
    QCOMPARE(inserted.count() + removed.count(), 0);

    log.filter.reset();
    QCOMPARE(log.shownIds(), QList<int>({4, 2, 6}));
    QCOMPARE(inserted.count(), 1);
}

void TestServiceLogFilter::hiddenRecordsMoveUpIntoAFilteredView()
{
    LogItems items;
    for (int id = 0; id < 1002; ++id)
        items.append(record(id, "Kart", QString(), 4, id >= 998 ? OpenState : DoneState));
    FilteredLog log(items);
    log.filter.setOperationFilter(ServiceLogFilter::pendingOnly);
    QTreeView view;
    view.setModel(&log.filter);
    view.show();
    view.setCurrentIndex(log.filter.index(1, 2));
    QCOMPARE(log.shownIds(), QList<int>({998, 999}));

    log.model.removeItem(0);
    view.grab();
    QCOMPARE(log.shownIds(), QList<int>({998, 999, 1000}));
    log.model.removeItem(log.model.rowOf(998));
    view.grab();
    QCOMPARE(log.shownIds(), QList<int>({999, 1000, 1001}));
    QCOMPARE(view.currentIndex(), log.filter.index(0, 2));
}

void TestServiceLogFilter::anUnchangedFilterEmitsNoSignals()
{
    FilteredLog log(mixedRecords());
    log.filter.setModelFilter("Kart");
    QSignalSpy inserted(&log.filter, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&log.filter, &QAbstractItemModel::rowsRemoved);
    QSignalSpy laidOut(&log.filter, &QAbstractItemModel::layoutChanged);
    log.filter.setModelFilter("Kart");
    log.filter.setNumberFilter("1");
    QCOMPARE(inserted.count() + removed.count() + laidOut.count(), 0);

    log.filter.setOperationFilter(5);
    QCOMPARE(removed.count(), 1);
    log.filter.reset();
    QCOMPARE(removed.count(), 1);
    QVERIFY(inserted.count() > 0);
    QCOMPARE(laidOut.count(), 0);
}

void TestServiceLogFilter::anotherLogIsShownByTheSameFilter()
{
    FilteredLog log(mixedRecords());
    log.tested.setSourceModel(nullptr); // Qt 6 demands that a layout change ends before a reset
    log.filter.setModelFilter("Kart");
    ServiceLogModel other;
    {
        const ClearbackgroundTableModel::LayoutChange unfinished(log.model);
        other.append({record(21, "Kart", QString()), record(22, QString(), QString())});
        log.filter.setSourceModel(&other);
    }
    QCOMPARE(log.shownIds(), QList<int>({21}));
    log.filter.setModelFilter(QString());
    QCOMPARE(log.shownIds(), QList<int>({21, 22}));
    log.model.removeItem(0);
    QCOMPARE(log.shownIds(), QList<int>({21, 22}));
}

void TestServiceLogFilter::aFilterWithoutALogShowsNothing()
{
    ServiceLogFilter filter;
    filter.setModelFilter("Kart");
    QCOMPARE(filter.rowCount(), 0);
    filter.sort(3, Qt::DescendingOrder);
    filter.reset();
    QVERIFY(!filter.index(0, 0).isValid());
}

GARAGE_TEST(TestServiceLogFilter)
#include "tst_servicelogfilter.moc"
