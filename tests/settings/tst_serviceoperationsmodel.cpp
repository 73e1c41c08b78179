#include "settings/serviceoperationsmodel.h"
#include "support/garagetest.h"

#include <QAbstractItemModelTester>

/// The list of service operations behind the settings page.
class TestServiceOperationsModel : public GarageTest
{
    Q_OBJECT
private slots:
    void startsEmptyWithTwoColumns();
    void showsNumberAndNameForReadingAndEditing();
    void onlyNamesAreEditable();
    void aNewNameIsAnnouncedWithoutDataChanged();
    void anyOtherChangeIsRefused_data();
    void anyOtherChangeIsRefused();
    void anEmptyRowIsAppendedForEditing();
    void theNewIdGoesToTheFirstRowWithoutOne();
    void removingRemovesTheFirstRowWithThatId();
    void persistentIndexesFollowTheirRow();
    void cellsOutOfRangeAnswerNothing();
};

namespace {

void fill(ServiceOperationsModel &model)
{
    model.appendOperation(4, "Масло");
    model.appendOperation(9, "Цепь");
}

QStringList rows(const ServiceOperationsModel &model)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row) {
        const ServiceOperation &operation = model.operationAt(row);
        texts.append(QString::number(operation.id) + ' ' + operation.name);
    }
    return texts;
}

} // namespace

void TestServiceOperationsModel::startsEmptyWithTwoColumns()
{
    ServiceOperationsModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 2);
    QCOMPARE(model.columnKey(0), "POS");
    QCOMPARE(model.columnKey(1), "NAME");
    QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), "#");
    QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), "Операция");
    for (int column : {0, 1})
        QCOMPARE(model.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt(), 132);
}

void TestServiceOperationsModel::showsNumberAndNameForReadingAndEditing()
{
    ServiceOperationsModel model;
    fill(model);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (int role : {Qt::DisplayRole, Qt::EditRole}) {
        QCOMPARE(model.index(0, 0).data(role), QVariant(1));
        QCOMPARE(model.index(1, 0).data(role), QVariant(2));
        QCOMPARE(model.index(1, 1).data(role), QVariant("Цепь"));
    }
    QCOMPARE(model.index(0, 0).data(Qt::TextAlignmentRole).toInt(), 2);
    QCOMPARE(model.index(0, 1).data(Qt::TextAlignmentRole).toInt(), 1);
    QCOMPARE(model.index(0, 1).data(Qt::BackgroundRole).value<QBrush>(), QBrush(Qt::transparent));
    QVERIFY(!model.index(0, 1).data(Qt::ToolTipRole).isValid());
}

void TestServiceOperationsModel::onlyNamesAreEditable()
{
    ServiceOperationsModel model;
    fill(model);
    QVERIFY(model.flags(model.index(0, 1)) & Qt::ItemIsEditable);
    QVERIFY(!(model.flags(model.index(0, 0)) & Qt::ItemIsEditable));
    QVERIFY(model.flags(model.index(0, 0)) & Qt::ItemIsSelectable);
    QVERIFY(!(model.flags({}) & Qt::ItemIsEditable));
}

void TestServiceOperationsModel::aNewNameIsAnnouncedWithoutDataChanged()
{
    ServiceOperationsModel model;
    fill(model);
    model.addEmptyOperation();
    QSignalSpy renamed(&model, &ServiceOperationsModel::operationNameChanged);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(model.setData(model.index(1, 1), "Цепь %1\nи звезда"));
    QVERIFY(model.setData(model.index(2, 1), "Шины"));
    QCOMPARE(renamed.count(), 2);
    QCOMPARE(renamed.at(0), QVariantList({9, "Цепь %1\nи звезда"}));
    QCOMPARE(renamed.at(1), QVariantList({-1, "Шины"}));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(model.index(1, 1).data().toString(), "Цепь %1\nи звезда");
}

void TestServiceOperationsModel::anyOtherChangeIsRefused_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("role");
    QTest::newRow("the view's notice of an editor") << 0 << 1 << int(Qt::UserRole);
    QTest::newRow("display role") << 0 << 1 << int(Qt::DisplayRole);
    QTest::newRow("number") << 0 << 0 << int(Qt::EditRole);
    QTest::newRow("no cell") << -1 << -1 << int(Qt::EditRole);
}

void TestServiceOperationsModel::anyOtherChangeIsRefused()
{
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(int, role);
    ServiceOperationsModel model;
    fill(model);
    const QStringList before = rows(model);
    QSignalSpy renamed(&model, &ServiceOperationsModel::operationNameChanged);
    QVERIFY(!model.setData(model.index(row, column), "editStarted", role));
    QCOMPARE(rows(model), before);
    QCOMPARE(renamed.count(), 0);
}

void TestServiceOperationsModel::anEmptyRowIsAppendedForEditing()
{
    ServiceOperationsModel model;
    fill(model);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QSignalSpy before(&model, &QAbstractItemModel::layoutAboutToBeChanged);
    QSignalSpy after(&model, &QAbstractItemModel::layoutChanged);
    const QModelIndex added = model.addEmptyOperation();
    QCOMPARE(added, model.index(2, 1));
    QCOMPARE(before.count(), 1);
    QCOMPARE(after.count(), 1);
    QCOMPARE(rows(model).last(), "-1 ");
}

void TestServiceOperationsModel::theNewIdGoesToTheFirstRowWithoutOne()
{
    ServiceOperationsModel model;
    fill(model);
    model.addEmptyOperation();
    model.addEmptyOperation();
    QSignalSpy changed(&model, &QAbstractItemModel::layoutChanged);
    model.setNewOperationId(12);
    QCOMPARE(rows(model).mid(2), QStringList({"12 ", "-1 "}));
    model.setNewOperationId(13);
    model.setNewOperationId(14);
    QCOMPARE(rows(model).mid(2), QStringList({"12 ", "13 "}));
    QCOMPARE(changed.count(), 0);
}

void TestServiceOperationsModel::removingRemovesTheFirstRowWithThatId()
{
    ServiceOperationsModel model;
    fill(model);
    model.appendOperation(4, "Ещё раз");
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QSignalSpy changed(&model, &QAbstractItemModel::layoutChanged);
    model.removeOperation(5);
    QCOMPARE(changed.count(), 0);
    model.removeOperation(4);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(rows(model), QStringList({"9 Цепь", "4 Ещё раз"}));
}

void TestServiceOperationsModel::persistentIndexesFollowTheirRow()
{
    ServiceOperationsModel model;
    fill(model);
    model.addEmptyOperation();
    model.addEmptyOperation();
    const QPersistentModelIndex chain = model.index(1, 1);
    const QPersistentModelIndex firstNew = model.index(2, 1);
    const QPersistentModelIndex secondNew = model.index(3, 1);
    model.removeOperation(4);
    QCOMPARE(chain.row(), 0);
    model.removeOperation(-1);
    QVERIFY(!firstNew.isValid());
    QCOMPARE(secondNew.row(), 1);
    model.removeOperationAt(0);
    QVERIFY(!chain.isValid());
    QCOMPARE(secondNew.row(), 0);
}

void TestServiceOperationsModel::cellsOutOfRangeAnswerNothing()
{
    ServiceOperationsModel model;
    fill(model);
    const QModelIndex last = model.index(1, 1);
    model.removeOperation(9);
    QVERIFY(!model.data(last, Qt::DisplayRole).isValid());
    QVERIFY(!(model.flags(last) & Qt::ItemIsEditable));
    QVERIFY(!model.setData(last, "x"));
    QVERIFY(!model.data({}, Qt::DisplayRole).isValid());
    QCOMPARE(model.rowCount(model.index(0, 0)), 0);
}

GARAGE_TEST(TestServiceOperationsModel)
#include "tst_serviceoperationsmodel.moc"
