#include "models/carslistmodel.h"
#include "support/garagetest.h"
#include "support/json.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTreeView>

#include <cstdio>

namespace {

QJsonObject carJson(int id, const QString &name, const QString &number, bool available = true)
{
    return {{"id", id},
            {"name", name},
            {"num", number},
            {"car_guid", QString("guid-%1").arg(id)},
            {"available_for_runs", available}};
}

QJsonObject carsJson(const QJsonArray &cars)
{
    return {{"cars", cars}};
}

QStringList shownNumbers(const CarsListModel &model)
{
    QStringList numbers;
    for (int row = 0; row < model.rowCount(); ++row)
        numbers.append(model.index(row, 2).data().toString());
    return numbers;
}

QModelIndexList allCells(const CarsListModel &model)
{
    QModelIndexList cells;
    for (int row = 0; row < model.rowCount(); ++row) {
        for (int column = 0; column < model.columnCount(); ++column)
            cells.append(model.index(row, column));
    }
    return cells;
}

QModelIndexList firstColumn(const CarsListModel &model)
{
    QModelIndexList cells;
    for (int row = 0; row < model.rowCount(); ++row)
        cells.append(model.index(row, 0));
    return cells;
}

CarsListModel::Car randomCar(QRandomGenerator &random)
{
    CarsListModel::Car car;
    car.id = random.bounded(-1, 4);
    car.name = QString(QLatin1Char("Kk"[random.bounded(2)])) + QString::number(random.bounded(2));
    car.numericNumber = random.bounded(-2, 3);
    return car;
}

/// The order of rows, implemented a second time: a chain of three-way comparisons.
int oracleComparison(const QJsonObject &left, const QJsonObject &right, int column, Qt::SortOrder order)
{
    const auto number = [](const QJsonObject &car) {
        int value = 0;
        const QByteArray text = car.value("num").toString().toLatin1();
        return std::sscanf(text.constData(), "%d", &value) == 1 ? value : 0;
    };
    const int byNumber = number(left) - number(right);
    const int byName = QString::compare(left.value("name").toString(), right.value("name").toString());
    const int byId = left.value("id").toInt() - right.value("id").toInt();
    const int sign = order == Qt::DescendingOrder ? -1 : 1;
    if (column == 0)
        return sign * (byNumber != 0 ? byNumber : byName);
    if (column == 1)
        return byName != 0 ? sign * byName : byNumber;
    return sign * byId;
}

} // namespace

/// The list of cars as the host publishes it.
class TestCarsListModel : public GarageTest
{
    Q_OBJECT
private slots:
    void columnsAreFixed();
    void rowsShowPositionModelAndNumber();
    void unavailableCarsAreGrey();
    void aCarIsAvailableUnlessMarkedUnavailable();
    void theListOfAvailableCarsLeavesTheOthersOut();
    void malformedCarsTakeDefaults_data();
    void malformedCarsTakeDefaults();
    void aMessageWithoutCarsEmptiesTheList_data();
    void aMessageWithoutCarsEmptiesTheList();
    void numbersOfAModelAscendInBothDirections();
    void numbersThatDoNotParseCountAsZero();
    void theNumberColumnIsSortedById();
    void sortingAgreesWithTheOracle_data();
    void sortingAgreesWithTheOracle();
    void theOrderIsStrictAndWeak();
    void aLoadSortsByModelForAllLists();
    void columnMinusOneRepeatsTheLastSortOfAnyList();
    void unknownColumnsAreSortedById();
    void loadAndSortAreOneLayoutChangeEach();
    void idsFollowTheOrderOfTheIndexes();
    void idsOfNoRowsAreAnEmptyArray();
    void idsOfRowsThatAreGoneAreSkipped();
    void containsKnowsTheIds();
    void selectionsFollowCarsWithoutIds();
    void nothingOutOfRangeIsAnswered();
};

void TestCarsListModel::columnsAreFixed()
{
    const CarsListModel model;
    QCOMPARE(model.columnCount(), 3);
    const QStringList titles {"#", "Модель", "Номер"};
    const QStringList keys {"POS", "MODEL", "NUM"};
    for (int column = 0; column < 3; ++column) {
        QCOMPARE(model.headerData(column, Qt::Horizontal).toString(), titles.at(column));
        QCOMPARE(model.columnKey(column), keys.at(column));
        QCOMPARE(model.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt(), 132);
    }
    QTreeView view;
    CarsListModel shown;
    view.setModel(&shown);
    view.header()->setStretchLastSection(false);
    shown.applyColumnWidths(&view);
    QCOMPARE(view.columnWidth(0), 40);
    QCOMPARE(view.columnWidth(1), 80);
    QCOMPARE(view.columnWidth(2), 80);
}

void TestCarsListModel::rowsShowPositionModelAndNumber()
{
    CarsListModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.loadFromJson(carsJson({carJson(5, "Sodi", "12A"), carJson(6, "Rimo", "3")}), false);
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(model.index(0, 0).data(), QVariant(1));
    QCOMPARE(model.index(1, 0).data(), QVariant(2));
    QCOMPARE(model.index(0, 1).data(), QVariant("Rimo"));
    QCOMPARE(model.index(1, 2).data(), QVariant("12A"));
    const int alignments[] = {2, 1, 2};
    for (int column = 0; column < 3; ++column)
        QCOMPARE(model.index(0, column).data(Qt::TextAlignmentRole).toInt(), alignments[column]);
    for (int role : {int(Qt::EditRole), int(Qt::ToolTipRole), int(Qt::ForegroundRole), int(Qt::UserRole)})
        QVERIFY(!model.index(0, 1).data(role).isValid());
}

void TestCarsListModel::unavailableCarsAreGrey()
{
    CarsListModel model;
    model.loadFromJson(carsJson({carJson(1, "A", "1", false), carJson(2, "B", "2")}), false);
    for (int column = 0; column < model.columnCount(); ++column) {
        const QVariant grey = model.index(0, column).data(Qt::BackgroundRole);
        QCOMPARE(grey.userType(), int(QMetaType::QColor));
        QCOMPARE(grey.value<QColor>(), QColor(192, 192, 192, 255));
        QCOMPARE(model.index(1, column).data(Qt::BackgroundRole).value<QBrush>(), QBrush(Qt::transparent));
    }
}

void TestCarsListModel::aCarIsAvailableUnlessMarkedUnavailable()
{
    const QJsonObject silent {{"id", 1}};
    const QJsonObject numeric {{"id", 2}, {"available_for_runs", 0}};
    const QJsonObject textual {{"id", 3}, {"available_for_runs", "false"}};
    CarsListModel model;
    model.loadFromJson(carsJson({silent, numeric, textual}), true);
    for (int id : {1, 2, 3})
        QVERIFY(model.contains(id));
}

void TestCarsListModel::theListOfAvailableCarsLeavesTheOthersOut()
{
    const QJsonObject cars = carsJson({carJson(1, "A", "1", false), carJson(2, "A", "2")});
    CarsListModel all;
    CarsListModel available;
    all.loadFromJson(cars, false);
    available.loadFromJson(cars, true);
    QCOMPARE(shownNumbers(all), QStringList({"1", "2"}));
    QCOMPARE(shownNumbers(available), QStringList({"2"}));
    QVERIFY(!available.contains(1));
}

void TestCarsListModel::malformedCarsTakeDefaults_data()
{
    QTest::addColumn<QJsonValue>("car");
    QTest::newRow("empty object") << QJsonValue(QJsonObject());
    QTest::newRow("not an object") << QJsonValue(7);
    QTest::newRow("null") << QJsonValue();
    QTest::newRow("wrong types") << QJsonValue(
        json(R"({"id": "4", "num": 12, "name": [], "car_guid": true})"));
    QTest::newRow("unknown keys") << QJsonValue(json(R"({"speed": 4})"));
}

void TestCarsListModel::malformedCarsTakeDefaults()
{
    QFETCH(const QJsonValue, car);
    CarsListModel model;
    model.loadFromJson(carsJson({car}), true);
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.index(0, 1).data(), QVariant(QString()));
    QCOMPARE(model.index(0, 2).data(), QVariant(QString()));
    QCOMPARE(model.idsOfRows({model.index(0, 0)}), QJsonArray({-1}));
}

void TestCarsListModel::aMessageWithoutCarsEmptiesTheList_data()
{
    QTest::addColumn<QJsonObject>("message");
    QTest::newRow("no key") << QJsonObject();
    QTest::newRow("an object") << json(R"({"cars": {}})");
    QTest::newRow("a text") << json(R"({"cars": "[]"})");
    QTest::newRow("an empty array") << carsJson({});
}

void TestCarsListModel::aMessageWithoutCarsEmptiesTheList()
{
    QFETCH(const QJsonObject, message);
    CarsListModel model;
    model.loadFromJson(carsJson({carJson(1, "A", "1")}), false);
    model.loadFromJson(message, false);
    QCOMPARE(model.rowCount(), 0);
    QVERIFY(!model.contains(1));
}

void TestCarsListModel::numbersOfAModelAscendInBothDirections()
{
    CarsListModel model;
    model.loadFromJson(carsJson({carJson(1, "A", "12"), carJson(2, "B", "9"), carJson(3, "A", "7")}), false);
    const auto numbers = [&model](Qt::SortOrder order) {
        model.sort(1, order);
        return shownNumbers(model).join(' ');
    };
    QCOMPARE(numbers(Qt::AscendingOrder), "7 12 9");
    QCOMPARE(numbers(Qt::DescendingOrder), "9 7 12");
}

void TestCarsListModel::numbersThatDoNotParseCountAsZero()
{
    CarsListModel model;
    model.loadFromJson(carsJson({carJson(1, "A", "1"), carJson(2, "A", "A5"), carJson(3, "A", "-1"),
                                 carJson(4, "A", " 3B"), carJson(5, "A", "2")}),
                       false);
    model.sort(0, Qt::AscendingOrder);
    QCOMPARE(model.idsOfRows(firstColumn(model)), QJsonArray({3, 2, 1, 5, 4}));
    model.sort(0, Qt::DescendingOrder);
    QCOMPARE(model.idsOfRows(firstColumn(model)), QJsonArray({4, 5, 1, 2, 3}));
}

void TestCarsListModel::theNumberColumnIsSortedById()
{
    CarsListModel model;
    model.loadFromJson(carsJson({carJson(3, "A", "1"), carJson(1, "A", "2"), carJson(2, "A", "3")}), false);
    model.sort(2, Qt::AscendingOrder);
    QCOMPARE(model.idsOfRows(firstColumn(model)), QJsonArray({1, 2, 3}));
    model.sort(2, Qt::DescendingOrder);
    QCOMPARE(model.idsOfRows(firstColumn(model)), QJsonArray({3, 2, 1}));
}

void TestCarsListModel::sortingAgreesWithTheOracle_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<Qt::SortOrder>("order");
    for (int column : {0, 1, 2}) {
        QTest::addRow("column %d ascending", column) << column << Qt::AscendingOrder;
        QTest::addRow("column %d descending", column) << column << Qt::DescendingOrder;
    }
}

void TestCarsListModel::sortingAgreesWithTheOracle()
{
    QFETCH(const int, column);
    QFETCH(const Qt::SortOrder, order);
    const QStringList names {QString(), "Kart", "kart", "Ёж"};
    const QStringList numbers {QString(), "7", "07", "A", "-4", "12B", "+", "999", " 3"};
    QRandomGenerator random(11);
    for (int round = 0; round < 50; ++round) {
        QJsonArray cars;
        QHash<int, QJsonObject> carsById;
        for (int id = 0, count = random.bounded(60); id < count; ++id) {
            const QJsonObject car = carJson(id, names.at(random.bounded(names.size())),
                                            numbers.at(random.bounded(numbers.size())));
            cars.append(car);
            carsById.insert(id, car);
        }
        CarsListModel model;
        model.loadFromJson(carsJson(cars), false);
        model.sort(column, order);

        const QJsonArray ids = model.idsOfRows(firstColumn(model));
        QCOMPARE(ids.size(), cars.size());
        for (int row = 0; row < ids.size(); ++row) {
            const QJsonObject car = carsById.take(ids.at(row).toInt(-1));
            QVERIFY(!car.isEmpty());
            QCOMPARE(model.index(row, 2).data().toString(), car.value("num").toString());
            if (row + 1 < ids.size()) {
                const QJsonObject next = carsById.value(ids.at(row + 1).toInt(-1));
                QVERIFY(oracleComparison(car, next, column, order) <= 0);
            }
        }
    }
}

void TestCarsListModel::theOrderIsStrictAndWeak()
{
    QRandomGenerator random(12);
    for (int column : {0, 1, 2, 9}) {
        for (Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
            const auto before = [column, order](const CarsListModel::Car &left,
                                                const CarsListModel::Car &right) {
                return CarsListModel::comesBefore(left, right, column, order);
            };
            const auto equivalent = [before](const CarsListModel::Car &left,
                                             const CarsListModel::Car &right) {
                return !before(left, right) && !before(right, left);
            };
            for (int round = 0; round < 20000; ++round) {
                const CarsListModel::Car a = randomCar(random);
                const CarsListModel::Car b = randomCar(random);
                const CarsListModel::Car c = randomCar(random);
                QVERIFY(!before(a, a));
                QVERIFY(!before(a, b) || !before(b, a));
                QVERIFY(!before(a, b) || !before(b, c) || before(a, c));
                QVERIFY(!equivalent(a, b) || !equivalent(b, c) || equivalent(a, c));
            }
        }
    }
}

void TestCarsListModel::aLoadSortsByModelForAllLists()
{
    const QJsonObject cars = carsJson({carJson(1, "B", "1"), carJson(2, "A", "2")});
    CarsListModel first;
    CarsListModel second;
    first.loadFromJson(cars, false);
    first.sort(0, Qt::DescendingOrder);
    second.loadFromJson(cars, false);
    QCOMPARE(second.idsOfRows(firstColumn(second)), QJsonArray({2, 1}));

    first.sort(2, Qt::AscendingOrder);
    second.loadFromJson(cars, false);
    first.sort(-1, Qt::DescendingOrder);
    QCOMPARE(first.idsOfRows(firstColumn(first)), QJsonArray({2, 1}));
}

void TestCarsListModel::columnMinusOneRepeatsTheLastSortOfAnyList()
{
    const QJsonObject cars = carsJson({carJson(1, "A", "10"), carJson(2, "B", "30"), carJson(3, "C", "20")});
    CarsListModel first;
    CarsListModel second;
    first.loadFromJson(cars, false);
    second.loadFromJson(cars, false);
    first.sort(0, Qt::DescendingOrder);
    QCOMPARE(second.idsOfRows(firstColumn(second)), QJsonArray({1, 2, 3}));
    second.sort(-1, Qt::AscendingOrder);
    QCOMPARE(second.idsOfRows(firstColumn(second)), QJsonArray({2, 3, 1}));
}

void TestCarsListModel::unknownColumnsAreSortedById()
{
    CarsListModel model;
    model.loadFromJson(carsJson({carJson(2, "A", "1"), carJson(1, "B", "2")}), false);
    for (int column : {3, 1000, -2}) {
        model.sort(column, Qt::AscendingOrder);
        QCOMPARE(model.idsOfRows(firstColumn(model)), QJsonArray({1, 2}));
        model.sort(column, Qt::DescendingOrder);
        QCOMPARE(model.idsOfRows(firstColumn(model)), QJsonArray({2, 1}));
    }
}

void TestCarsListModel::loadAndSortAreOneLayoutChangeEach()
{
    CarsListModel model;
    QSignalSpy before(&model, &QAbstractItemModel::layoutAboutToBeChanged);
    QSignalSpy after(&model, &QAbstractItemModel::layoutChanged);
    model.loadFromJson(carsJson({carJson(1, "A", "1")}), false);
    QCOMPARE(before.count(), 1);
    QCOMPARE(after.count(), 1);
    model.sort(0, Qt::AscendingOrder);
    QCOMPARE(before.count(), 2);
    QCOMPARE(after.count(), 2);
}

void TestCarsListModel::idsFollowTheOrderOfTheIndexes()
{
    CarsListModel model;
    model.loadFromJson(carsJson({carJson(7, "A", "1"), carJson(8, "B", "2")}), false);
    QCOMPARE(model.idsOfRows({model.index(1, 0), model.index(0, 2)}), QJsonArray({8, 7}));
    QCOMPARE(model.idsOfRows(allCells(model)), QJsonArray({7, 7, 7, 8, 8, 8}));
}

void TestCarsListModel::idsOfNoRowsAreAnEmptyArray()
{
    CarsListModel model;
    model.loadFromJson(carsJson({carJson(7, "A", "1")}), false);
    QCOMPARE(model.idsOfRows({}), QJsonArray());
}

void TestCarsListModel::idsOfRowsThatAreGoneAreSkipped()
{
    CarsListModel model;
    model.loadFromJson(carsJson({carJson(7, "A", "1"), carJson(8, "B", "2")}), false);
    const QModelIndex second = model.index(1, 0);
    model.loadFromJson(carsJson({carJson(9, "A", "1")}), false);
    QCOMPARE(model.idsOfRows({second, {}, model.index(0, 0)}), QJsonArray({9}));
}

void TestCarsListModel::containsKnowsTheIds()
{
    CarsListModel model;
    QVERIFY(!model.contains(-1));
    model.loadFromJson(carsJson({carJson(7, "A", "1", false)}), false);
    QVERIFY(model.contains(7));
    QVERIFY(!model.contains(8));
}

void TestCarsListModel::selectionsFollowCarsWithoutIds()
{
    CarsListModel model;
    const QJsonObject one {{"num", "1"}};
    const QJsonObject two {{"num", "2"}};
    model.loadFromJson(carsJson({one, two}), false);
    const QPersistentModelIndex second = model.index(1, 2);
    model.sort(0, Qt::DescendingOrder);
    QCOMPARE(second.row(), 0);
    QCOMPARE(second.data(), QVariant("2"));
}

void TestCarsListModel::nothingOutOfRangeIsAnswered()
{
    CarsListModel model;
    model.loadFromJson(carsJson({carJson(1, "A", "1", false), carJson(2, "B", "2", false)}), false);
    const QModelIndex gone = model.index(1, 1);
    QCOMPARE(model.rowCount(model.index(0, 0)), 0);
    model.loadFromJson({}, false);
    QVERIFY(!model.data(gone).isValid());
    QCOMPARE(model.data(gone, Qt::BackgroundRole).value<QBrush>(), QBrush(Qt::transparent));
    QVERIFY(!model.data({}).isValid());
}

GARAGE_TEST(TestCarsListModel)
#include "tst_carslistmodel.moc"
