#include "models/maintainancedelegate.h"
#include "models/maintainancefilterproxy.h"
#include "support/garagetest.h"
#include "support/maintainancesample.h"

#include <QHeaderView>
#include <QIdentityProxyModel>
#include <QPainter>
#include <QTreeView>

using namespace MaintainanceSample;

Q_DECLARE_METATYPE(OperationStat)
Q_DECLARE_METATYPE(ReglamentLimit)

namespace {

const QColor green(190, 247, 190);
const QColor red(255, 127, 127);
const QColor grid(Qt::blue);
const QColor paper(Qt::white);
constexpr int opId = 7;
constexpr int operationColumn = 3;

QPalette testPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Midlight, grid);
    palette.setColor(QPalette::Base, paper);
    palette.setColor(QPalette::Text, Qt::black);
    return palette;
}

/// A table of one car, painted cell by cell.
class PaintedCar
{
public:
    explicit PaintedCar(const QList<OperationStat> &stats)
    {
        const Reglament columns = Reglament::ofOperations({opId});
        model.updateColumns(&columns, nullptr);
        model.setItems({car(1, "12", "Sodi", stats)});
        proxy.setMaintainanceModel(&model);
        ModelReglament entry;
        entry.model = "Sodi";
        entry.limits.insert(opId, {opId, "Oil", 3600, 10, 50});
        reglament.list.append(entry);
        delegate.setReglament(&reglament);
    }

    ReglamentLimit &limit() { return reglament.list[0].limits[opId]; }
    QImage paint(int column, qreal ratio = 1, QStyle::State state = QStyle::State_Enabled) const
    {
        return paint(delegate, proxy.index(0, column), ratio, state);
    }
    static QImage paint(const QAbstractItemDelegate &itemDelegate, const QModelIndex &index, qreal ratio = 1,
                        QStyle::State state = QStyle::State_Enabled)
    {
        QImage image(QSize(180, 60) * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(paper);
        QPainter painter(&image);
        painter.setPen(grid);
        QStyleOptionViewItem option;
        option.rect = cell;
        option.state = state;
        option.palette = testPalette();
        itemDelegate.paint(&painter, option, index);
        return image;
    }

    static constexpr QRect cell {4, 4, 160, 41}; // the band begins at 4 + 20
    MaintainanceModel model;
    MaintainanceFilterProxy proxy;
    Reglament reglament;
    MaintainanceDelegate delegate;
};

QColor pixel(const QImage &image, int x, int y)
{
    return image.pixelColor(QPoint(x, y) * image.devicePixelRatio());
}

} // namespace

/// What the cells of the maintenance table look like.
class TestMaintainanceDelegate : public GarageTest
{
    Q_OBJECT
private slots:
    void theBandShowsWhetherALimitIsExceeded_data();
    void theBandShowsWhetherALimitIsExceeded();
    void theBandFillsTheLowerHalfWithinTheGrid_data();
    void theBandFillsTheLowerHalfWithinTheGrid();
    void emptyCellsHaveNoBand_data();
    void emptyCellsHaveNoBand();
    void withoutLimitsTheBandIsGreen();
    void carCellsAreTintedWhole_data() { theBandFillsTheLowerHalfWithinTheGrid_data(); }
    void carCellsAreTintedWhole();
    void noCellHasAFocusFrame();
    void otherTablesArePaintedPlain();
    void rowsAreTwoLinesHigh();
    void shownCellsHaveBandTintAndGrid_data() { theBandFillsTheLowerHalfWithinTheGrid_data(); }
    void shownCellsHaveBandTintAndGrid();
    void aRepaintAsksForFewCells();
};

void TestMaintainanceDelegate::theBandShowsWhetherALimitIsExceeded_data()
{
    QTest::addColumn<OperationStat>("stat");
    QTest::addColumn<ReglamentLimit>("limit");
    QTest::addColumn<QColor>("color");
    const ReglamentLimit limits {opId, {}, 3600, 10, 50};
    const ReglamentLimit none {opId, {}, 0, 0, 0};
    const auto driven = [](int seconds, int runs, int laps) {
        return done(opId, noonOf(1), seconds, runs, laps);
    };
    QTest::newRow("nothing driven") << driven(0, 0, 0) << limits << green;
    QTest::newRow("all at the limit") << driven(3600, 10, 50) << limits << green;
    QTest::newRow("one second over") << driven(3601, 0, 0) << limits << red;
    QTest::newRow("one run over") << driven(0, 11, 0) << limits << red;
    QTest::newRow("one lap over") << driven(0, 0, 51) << limits << red;
    QTest::newRow("no limits") << driven(999999, 999999, 999999) << none << green;
    QTest::newRow("negative time limit") << driven(0, 0, 0) << ReglamentLimit {opId, {}, -1, 0, 0} << red;
    QTest::newRow("negative runs limit") << driven(0, 0, 0) << ReglamentLimit {opId, {}, 0, -1, 0} << red;
    QTest::newRow("negative laps limit") << driven(0, 0, 0) << ReglamentLimit {opId, {}, 0, 0, -1} << red;
    OperationStat openWork = driven(0, 0, 0);
    openWork.state = OpenState;
    QTest::newRow("open work") << openWork << limits << green;
}

void TestMaintainanceDelegate::theBandShowsWhetherALimitIsExceeded()
{
    QFETCH(OperationStat, stat);
    QFETCH(ReglamentLimit, limit);
    QFETCH(QColor, color);
    PaintedCar painted({stat});
    painted.limit() = limit;
    QCOMPARE(pixel(painted.paint(operationColumn), 7, 35), color);
}

void TestMaintainanceDelegate::theBandFillsTheLowerHalfWithinTheGrid_data()
{
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("100 %") << 1.0;
    QTest::newRow("200 %") << 2.0;
}

void TestMaintainanceDelegate::theBandFillsTheLowerHalfWithinTheGrid()
{
    QFETCH(qreal, ratio);
    const PaintedCar painted({done(opId, noonOf(1), 0, 0, 51)});
    const QImage image = painted.paint(operationColumn, ratio);
    QCOMPARE(pixel(image, 7, 6), paper);
    QCOMPARE(pixel(image, 7, 23), paper);
    QCOMPARE(pixel(image, 7, 24), grid); // drawn with the pen of the cell before
    QCOMPARE(pixel(image, 7, 25), red);
    QCOMPARE(pixel(image, 7, 44), red);
    QCOMPARE(pixel(image, 160, 44), red);
    QCOMPARE(pixel(image, 7, 45), grid);
    QCOMPARE(pixel(image, 4, 10), grid);
    QCOMPARE(pixel(image, 4, 35), grid);
    QCOMPARE(pixel(image, 164, 35), grid);
    QCOMPARE(pixel(image, 7, 4), grid);
    QCOMPARE(pixel(image, 7, 47), paper);
    QCOMPARE(pixel(image, 2, 35), paper);
    QCOMPARE(pixel(image, 167, 35), paper);
}

void TestMaintainanceDelegate::emptyCellsHaveNoBand_data()
{
    QTest::addColumn<QList<OperationStat>>("stats");
    QTest::newRow("never recorded") << QList<OperationStat>();
    QTest::newRow("another operation") << QList<OperationStat> {done(8, noonOf(1), 0, 0, 99)};
    QTest::newRow("without a date") << QList<OperationStat> {done(opId, {}, 9999, 99, 99)};
}

void TestMaintainanceDelegate::emptyCellsHaveNoBand()
{
    QFETCH(QList<OperationStat>, stats);
    const PaintedCar painted(stats);
    const QImage image = painted.paint(operationColumn);
    for (int y : {10, 24, 35, 44})
        QCOMPARE(pixel(image, 7, y), paper);
}

void TestMaintainanceDelegate::withoutLimitsTheBandIsGreen()
{
    PaintedCar painted({done(opId, noonOf(1), 999999, 999, 999)});
    QCOMPARE(pixel(painted.paint(operationColumn), 7, 35), red);
    painted.limit() = ReglamentLimit();
    QCOMPARE(pixel(painted.paint(operationColumn), 7, 35), green);
    painted.reglament.list[0].limits.clear();
    QCOMPARE(pixel(painted.paint(operationColumn), 7, 35), green);
    painted.reglament.list[0].model = "sodi";
    painted.reglament.list[0].limits.insert(opId, {opId, {}, 1, 1, 1});
    QCOMPARE(pixel(painted.paint(operationColumn), 7, 35), green);
    painted.delegate.setReglament(nullptr);
    QCOMPARE(pixel(painted.paint(operationColumn), 7, 35), green);
}

void TestMaintainanceDelegate::carCellsAreTintedWhole()
{
    QFETCH(qreal, ratio);
    const PaintedCar openCar({open(complaintOperationId)});
    const PaintedCar doneCar({done(complaintOperationId, noonOf(1))});
    for (int column : {1, 2}) {
        // Model is on the left, number on the right: away from the text.
        const int x = column == 1 ? 150 : 10;
        for (int y : {6, 23, 24, 44}) {
            QCOMPARE(pixel(openCar.paint(column, ratio), x, y), red);
            QCOMPARE(pixel(doneCar.paint(column, ratio), x, y), paper);
        }
    }
    QCOMPARE(pixel(openCar.paint(0, ratio), 10, 35), paper);
}

void TestMaintainanceDelegate::noCellHasAFocusFrame()
{
    const PaintedCar painted({open(opId, noonOf(1))});
    for (int column = 0; column <= operationColumn; ++column) {
        QCOMPARE(
            painted.paint(column, 1,
                          QStyle::State_Enabled | QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange),
            painted.paint(column));
    }
}

void TestMaintainanceDelegate::otherTablesArePaintedPlain()
{
    const PaintedCar painted({done(opId, noonOf(1), 9999, 99, 99)});
    const GridDelegate plain;
    const QModelIndex unfiltered = painted.model.index(0, operationColumn);
    QCOMPARE(PaintedCar::paint(painted.delegate, unfiltered), PaintedCar::paint(plain, unfiltered));

    QIdentityProxyModel second;
    second.setSourceModel(const_cast<MaintainanceFilterProxy *>(&painted.proxy));
    const QModelIndex twice = second.index(0, operationColumn);
    QCOMPARE(PaintedCar::paint(painted.delegate, twice), PaintedCar::paint(plain, twice));

    const QIdentityProxyModel sourceless;
    const QModelIndex nothing = sourceless.index(0, operationColumn);
    QCOMPARE(PaintedCar::paint(painted.delegate, nothing), PaintedCar::paint(plain, nothing));
}

void TestMaintainanceDelegate::rowsAreTwoLinesHigh()
{
    const PaintedCar painted({done(opId, noonOf(1), 1, 1, 1)});
    const GridDelegate plain;
    for (int pointSize : {7, 9, 16}) {
        QStyleOptionViewItem option;
        option.font.setPointSize(pointSize);
        option.fontMetrics = QFontMetrics(option.font);
        const QSize twoLines = plain.sizeHint(option, painted.proxy.index(0, operationColumn));
        QVERIFY(twoLines.height() >= 2 * option.fontMetrics.height());
        for (int column = 0; column <= operationColumn; ++column) {
            const QSize hint = painted.delegate.sizeHint(option, painted.proxy.index(0, column));
            QCOMPARE(hint.height(), twoLines.height());
            QCOMPARE(hint.width(), plain.sizeHint(option, painted.proxy.index(0, column)).width());
        }
        const PaintedCar empty({});
        QCOMPARE(empty.delegate.sizeHint(option, empty.proxy.index(0, operationColumn)).height(),
                 twoLines.height());
    }
}

void TestMaintainanceDelegate::shownCellsHaveBandTintAndGrid()
{
    QFETCH(qreal, ratio);
    PaintedCar painted({open(complaintOperationId), done(opId, noonOf(1), 0, 0, 51)});
    QTreeView view;
    view.setPalette(testPalette());
    view.setRootIsDecorated(false);
    view.setUniformRowHeights(true);
    view.setItemDelegate(&painted.delegate);
    view.setModel(&painted.proxy);
    painted.model.applyColumnWidths(&view);
    view.resize(400, 150);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));

    QImage image(view.viewport()->size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    view.viewport()->render(&image);
    const auto cell = [&](int column) { return view.visualRect(painted.proxy.index(0, column)); };
    QVERIFY(cell(0).height() >= 2 * view.fontMetrics().height());
    QCOMPARE(pixel(image, cell(1).right() - 3, cell(1).top() + 3), red);
    QCOMPARE(pixel(image, cell(1).right() - 3, cell(1).bottom() - 1), red);
    QCOMPARE(pixel(image, cell(2).left() + 3, cell(2).center().y()), red);
    QCOMPARE(pixel(image, cell(0).left() + 3, cell(0).center().y()), paper);
    const QRect operation = cell(operationColumn);
    QCOMPARE(pixel(image, operation.left() + 3, operation.top() + 3), paper);
    QCOMPARE(pixel(image, operation.left() + 3, operation.bottom() - 1), red);
    QCOMPARE(pixel(image, operation.left(), operation.top() + 5), grid);
    QCOMPARE(pixel(image, operation.left() + 5, operation.bottom() + 1), grid);
}

void TestMaintainanceDelegate::aRepaintAsksForFewCells()
{
    class CountingProxy final : public QIdentityProxyModel
    {
    public:
        QVariant data(const QModelIndex &index, int role) const override
        {
            ++dataCalls;
            texts += role == Qt::DisplayRole ? 1 : 0;
            return QIdentityProxyModel::data(index, role);
        }
        mutable int dataCalls = 0;
        mutable int texts = 0;
    };
    const QList<int> opIds {1, 2, 3, 4, 5};
    MaintainanceModel model;
    const Reglament reglament = Reglament::ofOperations(opIds);
    model.updateColumns(&reglament, nullptr);
    QRandomGenerator random(5);
    QList<MaintainanceItem> cars;
    for (int carId = 1; carId <= 2000; ++carId)
        cars.append(randomCar(random, carId));
    model.setItems(cars);
    CountingProxy proxy;
    proxy.setSourceModel(&model);
    MaintainanceDelegate delegate;
    delegate.setReglament(&reglament);
    QTreeView view;
    view.setRootIsDecorated(false);
    view.setUniformRowHeights(true);
    view.setItemDelegate(&delegate);
    view.setModel(&proxy);
    model.applyColumnWidths(&view);
    view.resize(1200, 600);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));

    const int rowHeight = view.visualRect(proxy.index(0, 0)).height();
    const int shownCells = (view.viewport()->height() / rowHeight + 1) * model.columnCount();
    proxy.dataCalls = 0;
    proxy.texts = 0;
    reglament.reads = 0;
    view.grab();
    QVERIFY(proxy.dataCalls > 0);
    QVERIFY2(proxy.texts <= shownCells, qPrintable(QString::number(proxy.texts)));
    // Qt reads seven roles of each cell that it paints; the band and the height read none.
    QVERIFY2(proxy.dataCalls <= 7 * shownCells, qPrintable(QString::number(proxy.dataCalls)));
    QVERIFY2(reglament.reads <= shownCells, qPrintable(QString::number(reglament.reads)));
}

GARAGE_TEST(TestMaintainanceDelegate)
#include "tst_maintainancedelegate.moc"
