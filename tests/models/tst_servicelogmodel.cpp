#include "models/servicelogmodel.h"
#include "support/garagetest.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QTreeView>

namespace {

using LogItems = QList<ServiceLogItem>;

ServiceLogItem record(int id, int state = DoneState)
{
    ServiceLogItem item;
    item.id = id;
    item.state = state;
    item.opId = 4;
    item.num = "12A";
    item.model = "Sodi";
    item.opTime = QDateTime(QDate(2026, 3, 9), QTime(8, 5, 59));
    item.opName = "Масло";
    item.personName = "Иванов И. И.";
    item.comment = QString("№ %1").arg(id);
    return item;
}

LogItems records(int count)
{
    LogItems items;
    for (int id = 1; id <= count; ++id)
        items.append(record(id));
    return items;
}

void refill(ServiceLogModel &model, const LogItems &items)
{
    const ClearbackgroundTableModel::LayoutChange change(model);
    model.clear();
    model.append(items);
    model.refresh();
}

} // namespace

/// The service log: services and complaints.
class TestServiceLogModel : public GarageTest
{
    Q_OBJECT
private slots:
    void columnsAreFixed_data();
    void columnsAreFixed();
    void rowsShowTheRecord();
    void aRecordWithoutTimeShowsNone();
    void pendingRecordsAreTintedAcrossAllColumns();
    void atMostAThousandRowsAreShown();
    void removingAShownRecordBringsAHiddenOneIn();
    void aHiddenRecordCanBeRemoved();
    void appendAddsToTheEndAndCopies();
    void clearAndAppendEmitNoSignals();
    void aRefillIsOneLayoutChange();
    void removalsAreAnnouncedEvenIfNothingIsRemoved_data();
    void removalsAreAnnouncedEvenIfNothingIsRemoved();
    void recordsAreFoundByTheirLocalId();
    void indexesFollowTheirRecordUntilItIsGone();
    void indexesPushedBeyondTheShownRowsBecomeInvalid();
    void indexesOfAnUnannouncedRefillDoNotDangle();
    void nothingOutOfRangeIsAnswered();
};

void TestServiceLogModel::columnsAreFixed_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("alignment");
    QTest::addColumn<int>("width");
    int column = 0;
    const auto add = [&column](const char *key, const QString &title, int alignment, int width) {
        QTest::newRow(key) << column++ << title << key << alignment << width;
    };
    add("POS", "#", 2, 60);
    add("MODEL", "Модель", 2, 80);
    add("NUM", "Номер", 2, 60);
    add("TIME", "Время", 2, 120);
    add("OPNAME", "Операция", 1, 120);
    add("PERSONNAME", "Исполнитель", 1, 240);
    add("COMMENT", "Комментарий", 1, 240);
}

void TestServiceLogModel::columnsAreFixed()
{
    QFETCH(const int, column);
    ServiceLogModel model;
    refill(model, records(1));
    QCOMPARE(model.columnCount(), 7);
    QTEST(model.headerData(column, Qt::Horizontal).toString(), "title");
    QTEST(model.columnKey(column), "key");
    QTEST(model.index(0, column).data(Qt::TextAlignmentRole).toInt(), "alignment");
    QCOMPARE(model.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt(), 132);

    QTreeView view;
    view.setModel(&model);
    view.header()->setStretchLastSection(false);
    model.applyColumnWidths(&view);
    QTEST(view.columnWidth(column), "width");
}

void TestServiceLogModel::rowsShowTheRecord()
{
    ServiceLogModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    refill(model, records(2));
    const QVariantList expected {2, "Sodi", "12A", "09.03.2026 08:05", "Масло", "Иванов И. И.", "№ 2"};
    for (int column = 0; column < model.columnCount(); ++column) {
        QCOMPARE(model.index(1, column).data(), expected.at(column));
        for (int role : {int(Qt::EditRole), int(Qt::ToolTipRole), int(Qt::UserRole)})
            QVERIFY(!model.index(1, column).data(role).isValid());
    }
}

void TestServiceLogModel::aRecordWithoutTimeShowsNone()
{
    ServiceLogModel model;
    ServiceLogItem item = record(1);
    item.opTime = {};
    refill(model, {item});
    QCOMPARE(model.index(0, 3).data(), QVariant(QString()));
}

void TestServiceLogModel::pendingRecordsAreTintedAcrossAllColumns()
{
    ServiceLogModel model;
    refill(model, {record(1, OpenState), record(2, DoneState), record(3, 2)});
    for (int column = 0; column < 7; ++column) {
        const auto background = [&model, column](int row) {
            return model.index(row, column).data(Qt::BackgroundRole).value<QBrush>();
        };
        QCOMPARE(background(0), QBrush(QColor(255, 127, 127, 255)));
        QCOMPARE(background(1), QBrush(Qt::transparent));
        QCOMPARE(background(2), QBrush(Qt::transparent));
    }
}

void TestServiceLogModel::atMostAThousandRowsAreShown()
{
    ServiceLogModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (int count : {999, 1000, 1001, 1500}) {
        refill(model, records(count));
        QCOMPARE(model.rowCount(), qMin(count, 1000));
        QCOMPARE(model.rowOf(count), count - 1);
    }
    QCOMPARE(model.itemAt(1499).id, 1500);
}

void TestServiceLogModel::removingAShownRecordBringsAHiddenOneIn()
{
    ServiceLogModel model;
    refill(model, records(1001));
    QCOMPARE(model.index(999, 6).data(), QVariant("№ 1000"));
    model.removeItem(0);
    QCOMPARE(model.rowCount(), 1000);
    QCOMPARE(model.index(999, 6).data(), QVariant("№ 1001"));
    model.removeItem(0);
    QCOMPARE(model.rowCount(), 999);
}

void TestServiceLogModel::aHiddenRecordCanBeRemoved()
{
    ServiceLogModel model;
    refill(model, records(1500));
    model.removeItem(1200);
    QCOMPARE(model.rowOf(1201), -1);
    QCOMPARE(model.rowOf(1500), 1498);
    QCOMPARE(model.rowCount(), 1000);
}

void TestServiceLogModel::appendAddsToTheEndAndCopies()
{
    ServiceLogModel model;
    LogItems items = records(1);
    {
        const ClearbackgroundTableModel::LayoutChange change(model);
        model.append(items);
        model.append({record(7)});
    }
    items.first().comment = "changed later";
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(model.itemAt(0).comment, "№ 1");
    QCOMPARE(model.itemAt(1).id, 7);
}

void TestServiceLogModel::clearAndAppendEmitNoSignals()
{
    ServiceLogModel model;
    QSignalSpy before(&model, &QAbstractItemModel::layoutAboutToBeChanged);
    QSignalSpy after(&model, &QAbstractItemModel::layoutChanged);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    model.append(records(3));
    model.clear();
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(before.count() + after.count() + inserted.count() + reset.count(), 0);

    model.refresh();
    QCOMPARE(before.count(), 1);
    QCOMPARE(after.count(), 1);
}

void TestServiceLogModel::aRefillIsOneLayoutChange()
{
    ServiceLogModel model;
    QSignalSpy before(&model, &QAbstractItemModel::layoutAboutToBeChanged);
    QSignalSpy after(&model, &QAbstractItemModel::layoutChanged);
    refill(model, records(3));
    QCOMPARE(before.count(), 1);
    QCOMPARE(after.count(), 1);
}

void TestServiceLogModel::removalsAreAnnouncedEvenIfNothingIsRemoved_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("left");
    QTest::newRow("first") << 0 << 2;
    QTest::newRow("last") << 2 << 2;
    QTest::newRow("before the first") << -1 << 3;
    QTest::newRow("beyond the last") << 3 << 3;
    QTest::newRow("far away") << 1000000 << 3;
}

void TestServiceLogModel::removalsAreAnnouncedEvenIfNothingIsRemoved()
{
    QFETCH(const int, row);
    ServiceLogModel model;
    refill(model, records(3));
    QSignalSpy before(&model, &QAbstractItemModel::layoutAboutToBeChanged);
    QSignalSpy after(&model, &QAbstractItemModel::layoutChanged);
    model.removeItem(row);
    QCOMPARE(before.count(), 1);
    QCOMPARE(after.count(), 1);
    QTEST(model.rowCount(), "left");
}

void TestServiceLogModel::recordsAreFoundByTheirLocalId()
{
    ServiceLogModel model;
    QCOMPARE(model.rowOf(1), -1);
    refill(model, {record(5), record(3)});
    QCOMPARE(model.rowOf(5), 0);
    QCOMPARE(model.rowOf(3), 1);
    QCOMPARE(model.rowOf(4), -1);
}

void TestServiceLogModel::indexesFollowTheirRecordUntilItIsGone()
{
    ServiceLogModel model;
    refill(model, records(3));
    const QPersistentModelIndex second = model.index(1, 4);
    const QPersistentModelIndex third = model.index(2, 6);
    refill(model, {record(9), record(3), record(8), record(2)});
    QCOMPARE(second, QPersistentModelIndex(model.index(3, 4)));
    QCOMPARE(third, QPersistentModelIndex(model.index(1, 6)));
    model.removeItem(1);
    QVERIFY(!third.isValid());
    QCOMPARE(second.row(), 2);
}

void TestServiceLogModel::indexesPushedBeyondTheShownRowsBecomeInvalid()
{
    ServiceLogModel model;
    refill(model, records(1000));
    const QPersistentModelIndex first = model.index(0, 0);
    const QPersistentModelIndex last = model.index(999, 0);
    LogItems items = records(1000);
    items.prepend(record(2000));
    refill(model, items);
    QCOMPARE(first.row(), 1);
    QVERIFY(!last.isValid());
}

void TestServiceLogModel::indexesOfAnUnannouncedRefillDoNotDangle()
{
    ServiceLogModel model;
    refill(model, records(3));
    const QPersistentModelIndex third = model.index(2, 6);
    model.clear();
    model.append({record(9)});
    model.refresh();
    QVERIFY(!third.isValid());
}

void TestServiceLogModel::nothingOutOfRangeIsAnswered()
{
    ServiceLogModel model;
    refill(model, {record(1, OpenState), record(2, OpenState)});
    const QModelIndex gone = model.index(1, 1);
    QCOMPARE(model.rowCount(model.index(0, 0)), 0);
    refill(model, {});
    QVERIFY(!model.data(gone).isValid());
    QCOMPARE(model.data(gone, Qt::BackgroundRole).value<QBrush>(), QBrush(Qt::transparent));
    QVERIFY(!model.data({}).isValid());
}

GARAGE_TEST(TestServiceLogModel)
#include "tst_servicelogmodel.moc"
