#include "settings/servicereglamentmodel.h"
#include "support/garagetest.h"

#include <QAbstractItemModelTester>
#include <QLocale>
#include <QSignalSpy>

/// The maintenance schedule behind the settings page.
class TestServiceReglamentModel : public GarageTest
{
    Q_OBJECT
private slots:
    void startsEmptyWithTwoColumns();
    void operationsBecomeColumns();
    void limitsAreShownInHoursRunsAndLaps_data();
    void limitsAreShownInHoursRunsAndLaps();
    void hoursHaveADecimalPointInEveryLocale();
    void anOperationOfIdMinusOneNeverShowsLimits();
    void nothingIsEditable();
    void limitsOfUnknownModelsAndOperationsAreDropped();
    void limitsThatAreThereSurviveASecondColumn();
    void limitsAreFoundByPlace();
    void editedLimitsAreAnnouncedForTheirCell();
    void cellsOutOfRangeAnswerNothing();
    void theFirstOfEqualModelsIsFound();
    void persistentIndexesFollowModelAndOperation();
    void namesAreShownAsTheyAre();
};

namespace {

void fill(ServiceReglamentModel &model)
{
    const ServiceReglamentModel::LayoutChange change(model);
    model.clear();
    model.addModel("SODI");
    model.addModel("Rimo");
    model.addOperation(3, "Масло");
    model.addOperation(7, "Цепь");
}

} // namespace

void TestServiceReglamentModel::startsEmptyWithTwoColumns()
{
    ServiceReglamentModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 2);
    QCOMPARE(model.columnKey(0), "POS");
    QCOMPARE(model.columnKey(1), "MODEL");
    QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), "#");
    QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), "Модель");
    for (int column : {0, 1})
        QCOMPARE(model.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt(), 132);
}

void TestServiceReglamentModel::operationsBecomeColumns()
{
    ServiceReglamentModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    fill(model);
    QCOMPARE(model.columnCount(), 4);
    QCOMPARE(model.columnKey(2), "OP_3");
    QCOMPARE(model.columnKey(3), "OP_7");
    QCOMPARE(model.headerData(3, Qt::Horizontal).toString(), "Цепь");
    QCOMPARE(model.headerData(3, Qt::Horizontal, Qt::TextAlignmentRole).toInt(), 132);
    QCOMPARE(model.index(1, 0).data(), QVariant(2));
    QCOMPARE(model.index(1, 0).data(Qt::TextAlignmentRole).toInt(), 2);
    QCOMPARE(model.index(1, 1).data(), QVariant("Rimo"));
    QCOMPARE(model.index(1, 1).data(Qt::TextAlignmentRole).toInt(), 1);
    QCOMPARE(model.index(1, 3).data(Qt::TextAlignmentRole).toInt(), 132);
    QCOMPARE(model.index(1, 3).data(Qt::BackgroundRole).value<QBrush>(), QBrush(Qt::transparent));

    const ReglamentLimit limit = model.entries().at(1).limits.value(7);
    QCOMPARE(limit.opId, 7);
    QCOMPARE(limit.opName, "Цепь");
    QVERIFY(!limit.limits.hasAny());
}

void TestServiceReglamentModel::limitsAreShownInHoursRunsAndLaps_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("runs");
    QTest::addColumn<int>("laps");
    QTest::addColumn<QString>("text");
    QTest::newRow("time and runs") << 5400 << 10 << 0 << "1.5 ч. 10 заезд. 0 кр.";
    QTest::newRow("no limit") << 0 << 0 << 0 << "";
    QTest::newRow("rounded up") << 1799 << 0 << 0 << "0.5 ч. 0 заезд. 0 кр.";
    QTest::newRow("one second and laps") << 1 << 0 << 5 << "0.0 ч. 0 заезд. 5 кр.";
    QTest::newRow("one second alone") << 1 << 0 << 0 << "0.0 ч. 0 заезд. 0 кр.";
    QTest::newRow("runs alone") << 0 << 3 << 0 << "0.0 ч. 3 заезд. 0 кр.";
    QTest::newRow("negative") << -5400 << -1 << -2 << "-1.5 ч. -1 заезд. -2 кр.";
    QTest::newRow("the largest") << 2147483647 << 2147483647 << 2147483647
                                 << "596523.2 ч. 2147483647 заезд. 2147483647 кр.";
}

void TestServiceReglamentModel::limitsAreShownInHoursRunsAndLaps()
{
    QFETCH(int, seconds);
    QFETCH(int, runs);
    QFETCH(int, laps);
    ServiceReglamentModel model;
    fill(model);
    model.setLimits("Rimo", 3, {seconds, runs, laps});
    QTEST(model.index(1, 2).data().toString(), "text");
    QCOMPARE(model.index(1, 2).data().type(), QVariant::String);
    QVERIFY(!model.index(1, 2).data(Qt::EditRole).isValid());
    QVERIFY(!model.index(1, 2).data(Qt::ToolTipRole).isValid());
}

void TestServiceReglamentModel::hoursHaveADecimalPointInEveryLocale()
{
    const QLocale previous;
    QLocale::setDefault(QLocale(QLocale::Russian));
    ServiceReglamentModel model;
    fill(model);
    model.setLimits("SODI", 3, {5400, 0, 0});
    const QString text = model.index(0, 2).data().toString();
    QLocale::setDefault(previous);
    QCOMPARE(text, "1.5 ч. 0 заезд. 0 кр.");
}

void TestServiceReglamentModel::anOperationOfIdMinusOneNeverShowsLimits()
{
    ServiceReglamentModel model;
    model.addModel("SODI");
    model.addOperation(-1, "Жалоба");
    model.setLimits("SODI", -1, {3600, 1, 1});
    QCOMPARE(model.index(0, 2).data(), QVariant(QString()));
}

void TestServiceReglamentModel::nothingIsEditable()
{
    ServiceReglamentModel model;
    fill(model);
    for (int column = 0; column < model.columnCount(); ++column) {
        const QModelIndex cell = model.index(0, column);
        QVERIFY(!(model.flags(cell) & Qt::ItemIsEditable));
        QVERIFY(!model.setData(cell, 1));
    }
}

void TestServiceReglamentModel::limitsOfUnknownModelsAndOperationsAreDropped()
{
    ServiceReglamentModel model;
    fill(model);
    model.setLimits("sodi", 3, {1, 1, 1});
    model.setLimits("SODI", 4, {1, 1, 1});
    QCOMPARE(model.rowCount(), 2);
    for (const ModelReglament &entry : model.entries()) {
        QCOMPARE(entry.limits.keys(), QList<int>({3, 7}));
        QCOMPARE(entry.limits.value(3).limits.seconds, 0);
    }
}

void TestServiceReglamentModel::limitsThatAreThereSurviveASecondColumn()
{
    ServiceReglamentModel model;
    fill(model);
    model.setLimits("SODI", 3, {60, 2, 1});
    model.addOperation(3, "Масло ещё раз");
    QCOMPARE(model.limits("SODI", 3).seconds, 60);
    QCOMPARE(model.entries().first().limits.value(3).opName, "Масло");
    QVERIFY(!model.limitAt(0, 4));
}

void TestServiceReglamentModel::limitsAreFoundByPlace()
{
    ServiceReglamentModel model;
    fill(model);
    QCOMPARE(model.limitAt(1, 2)->opId, 3);
    QCOMPARE(model.limitAt(1, 3)->opId, 7);
    for (int column : {-1, 0, 1, 4})
        QVERIFY(!model.limitAt(1, column));
    for (int row : {-1, 2})
        QVERIFY(!model.limitAt(row, 2));
    QVERIFY(model.isOperationColumn(2));
    for (int column : {-1, 0, 1, 4})
        QVERIFY(!model.isOperationColumn(column));
}

void TestServiceReglamentModel::cellsOutOfRangeAnswerNothing()
{
    ServiceReglamentModel model;
    fill(model);
    const QModelIndex stale = model.index(1, 3);
    model.clear();
    QVERIFY(!model.data(stale).isValid());
    QVERIFY(!model.data({}).isValid());
    QCOMPARE(model.rowCount(stale), 0);
}

void TestServiceReglamentModel::theFirstOfEqualModelsIsFound()
{
    ServiceReglamentModel model;
    model.addModel(QString());
    model.addModel("");
    model.addOperation(3, "Масло");
    model.setLimits(QString(), 3, {3600, 0, 0});
    QCOMPARE(model.findModel(QString()), &model.entries().first());
    QCOMPARE(model.entries().at(0).limits.value(3).limits.seconds, 3600);
    QCOMPARE(model.entries().at(1).limits.value(3).limits.seconds, 0);
}

void TestServiceReglamentModel::persistentIndexesFollowModelAndOperation()
{
    ServiceReglamentModel model;
    fill(model);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QPersistentModelIndex sodiOil = model.index(0, 2);
    const QPersistentModelIndex rimoChain = model.index(1, 3);
    {
        const ServiceReglamentModel::LayoutChange change(model);
        model.clear();
        model.addModel("Rimo");
        model.addOperation(7, "Цепь");
    }
    QVERIFY(!sodiOil.isValid());
    QCOMPARE(rimoChain.row(), 0);
    QCOMPARE(rimoChain.column(), 2);
}

void TestServiceReglamentModel::namesAreShownAsTheyAre()
{
    const QString name = "\"a'b\"\n%1 %s 100% 🏎 " + QString(10000, 'x');
    ServiceReglamentModel model;
    model.addModel(name);
    model.addOperation(1, name);
    model.setLimits(name, 1, {3600, 0, 0});
    QCOMPARE(model.index(0, 1).data().toString(), name);
    QCOMPARE(model.headerData(2, Qt::Horizontal).toString(), name);
    QCOMPARE(model.index(0, 2).data().toString(), "1.0 ч. 0 заезд. 0 кр.");
}

void TestServiceReglamentModel::editedLimitsAreAnnouncedForTheirCell()
{
    ServiceReglamentModel model;
    fill(model);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    const QModelIndex rimoChain = model.index(1, 3);
    model.setLimits(rimoChain, 7, {5400, 10, 0});
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().at(0).toModelIndex(), rimoChain);
    QCOMPARE(changed.first().at(1).toModelIndex(), rimoChain);
    QCOMPARE(model.limits("Rimo", 7).runs, 10);
    QVERIFY(!model.limits("SODI", 7).hasAny());

    model.setLimits(rimoChain, 4, {1, 1, 1}); // no such operation
    model.setLimits(QModelIndex(), 7, {1, 1, 1});
    QCOMPARE(changed.count(), 1);
    QCOMPARE(model.limits("Rimo", 7).runs, 10);
}

GARAGE_TEST(TestServiceReglamentModel)
#include "tst_servicereglamentmodel.moc"
