#include "models/maintainancemodel.h"
#include "models/maintainanceorder.h"
#include "support/garagetest.h"
#include "support/maintainancesample.h"

#include <QAbstractItemModelTester>

#include <optional>

using namespace MaintainanceSample;

namespace {

constexpr int byModelAndNumber = -1;
constexpr int unknownMode = 4;

int oracleNumber(const QString &num)
{
    int digits = 0;
    while (digits < num.size() && num.at(digits).isDigit())
        ++digits;
    return digits == 0 ? -1 : num.left(digits).toInt();
}

std::optional<qint64> oracleValue(const MaintainanceItem &item, int opId, int mode)
{
    if (!item.ops.contains(opId))
        return std::nullopt;
    const OperationStat stat = item.ops.value(opId);
    if (mode == 0)
        return stat.lastDone.isValid() ? std::optional<qint64>(stat.lastDone.toMSecsSinceEpoch())
                                       : std::nullopt;
    if (mode == 1)
        return stat.totalTime;
    return mode == 2 ? stat.runs : stat.laps;
}

/// The place of b relative to a: -1 after it, 1 before it, 0 anywhere.
int oracle(const MaintainanceItem &a, const MaintainanceItem &b, int opId, int mode, int direction)
{
    if (opId != byModelAndNumber && mode < unknownMode) {
        const std::optional<qint64> valueA = oracleValue(a, opId, mode);
        const std::optional<qint64> valueB = oracleValue(b, opId, mode);
        if (valueA && valueB)
            return *valueA == *valueB ? 0 : (*valueA < *valueB ? -direction : direction);
        if (valueA)
            return -1;
        if (valueB)
            return 1;
    }
    if (a.model != b.model)
        return QString::compare(a.model, b.model, Qt::CaseSensitive) < 0 ? -direction : direction;
    const int difference = oracleNumber(a.num) - oracleNumber(b.num);
    return difference == 0 ? 0 : (difference < 0 ? -direction : direction);
}

} // namespace

/// How the rows of the maintenance table are ordered.
class TestMaintainanceOrder : public GarageTest
{
    Q_OBJECT
private slots:
    void everyColumnKindSortsByTheRuleInBothDirections_data();
    void everyColumnKindSortsByTheRuleInBothDirections();
    void theRuleIsAStrictWeakOrder_data() { everyColumnKindSortsByTheRuleInBothDirections_data(); }
    void theRuleIsAStrictWeakOrder();
    void theFirstRequestIsAnsweredByNumber();
    void nothingIsSortedBeforeTheFirstRequest();
    void theOrderOutlivesARefill();
    void aNumberIsReadFromTheBeginningOfItsText_data();
    void aNumberIsReadFromTheBeginningOfItsText();
};

void TestMaintainanceOrder::everyColumnKindSortsByTheRuleInBothDirections_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("order");
    for (int column = 0; column < 6; ++column) {
        for (int mode = 0; mode <= unknownMode; ++mode) {
            for (int order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
                QTest::addRow("column %d, mode %d, %s", column, mode, order == 0 ? "up" : "down")
                    << column << mode << order;
            }
        }
    }
}

void TestMaintainanceOrder::everyColumnKindSortsByTheRuleInBothDirections()
{
    QFETCH(int, column);
    QFETCH(int, mode);
    QFETCH(int, order);
    const int opId = column < 3 ? byModelAndNumber : column - 2;
    const int direction = order == Qt::AscendingOrder ? 1 : -1;

    MaintainanceModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const Reglament reglament = Reglament::ofOperations({1, 2, 3});
    {
        const ClearbackgroundTableModel::LayoutChange change(model);
        model.updateColumns(&reglament, nullptr);
    }
    QRandomGenerator random(20240509);
    QList<MaintainanceItem> cars;
    for (int carId = 1; carId <= 150; ++carId)
        cars.append(randomCar(random, carId));
    model.setItems(cars);
    model.sort(0);
    model.setSortMode(mode);
    model.sort(column, Qt::SortOrder(order));

    QSet<int> carIds;
    for (int row = 0; row < model.rowCount(); ++row) {
        carIds.insert(model.itemAt(row).carId);
        for (int later = row + 1; later < model.rowCount(); ++later)
            QVERIFY(oracle(model.itemAt(row), model.itemAt(later), opId, mode, direction) <= 0);
    }
    QCOMPARE(carIds.size(), cars.size());
}

void TestMaintainanceOrder::theRuleIsAStrictWeakOrder()
{
    QFETCH(int, column);
    QFETCH(int, mode);
    QFETCH(int, order);
    const MaintainanceOrder precedes(column < 3 ? std::nullopt : std::optional<int>(column - 2), mode,
                                     Qt::SortOrder(order));
    const auto equivalent = [&precedes](const MaintainanceOrder::Key &x, const MaintainanceOrder::Key &y) {
        return !precedes(x, y) && !precedes(y, x);
    };
    QRandomGenerator random(quint32(column * 100 + mode * 10 + order));
    for (int i = 0; i < 3000; ++i) {
        const MaintainanceOrder::Key a = precedes.key(randomCar(random, 1));
        const MaintainanceOrder::Key b = precedes.key(randomCar(random, 2));
        const MaintainanceOrder::Key c = precedes.key(randomCar(random, 3));
        QVERIFY(!precedes(a, a));
        QVERIFY(!(precedes(a, b) && precedes(b, a)));
        QVERIFY(!(precedes(a, b) && precedes(b, c)) || precedes(a, c));
        QVERIFY(!(equivalent(a, b) && equivalent(b, c)) || equivalent(a, c));
    }
}

void TestMaintainanceOrder::theFirstRequestIsAnsweredByNumber()
{
    MaintainanceModel model;
    model.setItems({car(1, "10", "Sodi"), car(2, "9", "Sodi"), car(3, "100", "Birel")});
    const auto numbers = [&model] {
        QStringList result;
        for (int row = 0; row < model.rowCount(); ++row)
            result.append(model.itemAt(row).num);
        return result.join(' ');
    };
    model.sort(900, Qt::DescendingOrder);
    QCOMPARE(numbers(), "100 9 10");
    model.sort(1, Qt::DescendingOrder);
    QCOMPARE(numbers(), "10 9 100");
    model.sort(900, Qt::AscendingOrder); // no such column: the rows stay
    QCOMPARE(numbers(), "10 9 100");
}

void TestMaintainanceOrder::nothingIsSortedBeforeTheFirstRequest()
{
    MaintainanceModel model;
    model.setItems({car(2, "2", "Sodi"), car(1, "1", "Sodi")});
    model.setSortMode(MaintainanceModel::SortByRuns);
    QCOMPARE(model.itemAt(0).carId, 2);
}

void TestMaintainanceOrder::theOrderOutlivesARefill()
{
    MaintainanceModel model;
    const Reglament reglament = Reglament::ofOperations({1});
    model.updateColumns(&reglament, nullptr);
    model.sort(0);
    model.sort(3, Qt::DescendingOrder);
    model.setSortMode(MaintainanceModel::SortByLaps);
    model.setItems({car(1, "1", "Sodi", {done(1, noonOf(2), 0, 0, 5)}),
                    car(2, "2", "Sodi", {done(1, noonOf(1), 0, 0, 9)}), car(3, "3", "Sodi")});
    QCOMPARE(model.itemAt(0).carId, 2);
    QCOMPARE(model.itemAt(1).carId, 1);
    QCOMPARE(model.itemAt(2).carId, 3);
    model.setSortMode(MaintainanceModel::SortByLastDone);
    QCOMPARE(model.itemAt(0).carId, 1);
}

void TestMaintainanceOrder::aNumberIsReadFromTheBeginningOfItsText_data()
{
    QTest::addColumn<QString>("num");
    QTest::addColumn<int>("number");
    QTest::newRow("plain") << "10" << 10;
    QTest::newRow("with a letter") << "3B" << 3;
    QTest::newRow("with a blank before") << " 12" << 12;
    QTest::newRow("letter first") << "A5" << -1;
    QTest::newRow("empty") << QString() << -1;
    QTest::newRow("negative") << "-4" << -4;
}

void TestMaintainanceOrder::aNumberIsReadFromTheBeginningOfItsText()
{
    QFETCH(QString, num);
    QFETCH(int, number);
    const MaintainanceOrder order(std::nullopt, 0, Qt::AscendingOrder);
    QCOMPARE(order.key(car(1, num, "Sodi")).number, number);
}

GARAGE_TEST(TestMaintainanceOrder)
#include "tst_maintainanceorder.moc"
