#include "models/carslistmodel.h"
#include "models/maintainancedelegate.h"
#include "models/maintainancefilterproxy.h"
#include "models/servicelogmodel.h"
#include "support/garagetest.h"
#include "support/maintainancesample.h"

#include <QHeaderView>
#include <QJsonArray>
#include <QJsonObject>
#include <QPainter>
#include <QStandardItemModel>
#include <QTreeView>

#include <cmath>

using namespace MaintainanceSample;

namespace {

const QColor green(190, 247, 190);
const QColor red(255, 127, 127);
const QColor grey(192, 192, 192);
constexpr int opId = 7;

QPalette darkPalette()
{
    QPalette palette(QColor(53, 53, 53));
    palette.setColor(QPalette::Base, QColor(35, 35, 35));
    palette.setColor(QPalette::Text, QColor(239, 240, 241));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    return palette;
}

qreal luminance(const QColor &color)
{
    const auto linear = [](qreal part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

qreal contrast(const QColor &a, const QColor &b)
{
    const qreal light = std::max(luminance(a), luminance(b));
    return (light + 0.05) / (std::min(luminance(a), luminance(b)) + 0.05);
}

/// The best contrast that a pixel within the rectangle has to the background: that of the text's strokes.
qreal textContrast(const QImage &image, const QRect &part, const QColor &background)
{
    qreal best = 1;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x)
            best = std::max(best, contrast(image.pixelColor(x, y), background));
    }
    return best;
}

/// The smallest rectangle around all pixels of another colour.
QRect inkBounds(const QImage &image, const QRect &part, const QColor &background)
{
    QRect bounds;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            if (image.pixelColor(x, y) != background)
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

/// One that paints as Qt does and knows of no palette.
class PlainGrid : public QStyledItemDelegate
{
public:
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::paint(painter, option, index);
        painter->setPen(option.palette.color(QPalette::Midlight));
        painter->drawRect(option.rect);
    }
};

void show(QTreeView &view, QAbstractItemModel &model, QAbstractItemDelegate &delegate)
{
    view.setRootIsDecorated(false);
    view.setUniformRowHeights(true);
    view.setItemDelegate(&delegate);
    view.setModel(&model);
    view.header()->setStretchLastSection(false);
    for (int column = 0; column < model.columnCount(); ++column)
        view.setColumnWidth(column, 200);
    view.resize(1500, 200);
    view.show();
}

QRect inner(const QTreeView &view, const QModelIndex &cell)
{
    return view.visualRect(cell).adjusted(2, 2, -3, -3);
}

} // namespace

/// Text over the fixed colours is dark in every palette.
class TestDarkPalette : public GarageTest
{
    Q_OBJECT
private slots:
    void textOverRedAndGreyIsDark_data();
    void textOverRedAndGreyIsDark();
    void textOverABandIsDarkAndLightAboveIt_data();
    void textOverABandIsDarkAndLightAboveIt();
    void eachLineIsPaintedInItsHalf();
    void textOverATranslucentSelectionIsDark();
    void aLightPaletteChangesNothing();
};

void TestDarkPalette::textOverRedAndGreyIsDark_data()
{
    QTest::addColumn<bool>("dark");
    QTest::newRow("light palette") << false;
    QTest::newRow("dark palette") << true;
}

void TestDarkPalette::textOverRedAndGreyIsDark()
{
    QFETCH(bool, dark);
    GridDelegate delegate;
    ServiceLogModel log;
    ServiceLogItem record;
    record.model = "Sodi";
    record.state = OpenState;
    log.append({record});
    CarsListModel cars;
    cars.loadFromJson({{"cars",
                        QJsonArray {QJsonObject {
                            {"id", 1}, {"name", "Sodi"}, {"num", "12"}, {"available_for_runs", false}}}}},
                      false);
    const QVector<QPair<QAbstractItemModel *, QColor>> tables {{&log, red}, {&cars, grey}};
    for (const auto &table : tables) {
        QTreeView view;
        if (dark)
            view.setPalette(darkPalette());
        show(view, *table.first, delegate);
        const QModelIndex cell = table.first->index(0, 1);
        const QRect part = inner(view, cell);
        const QImage image = view.viewport()->grab().toImage();
        QCOMPARE(image.pixelColor(part.topLeft()), table.second);
        const qreal reached = textContrast(image, part, table.second);
        QVERIFY2(reached >= 7, qPrintable(QString::number(reached)));
    }
}

void TestDarkPalette::textOverABandIsDarkAndLightAboveIt_data()
{
    QTest::addColumn<int>("laps");
    QTest::addColumn<QColor>("band");
    QTest::newRow("within limits") << 50 << green;
    QTest::newRow("exceeded") << 51 << red;
}

void TestDarkPalette::textOverABandIsDarkAndLightAboveIt()
{
    QFETCH(int, laps);
    QFETCH(QColor, band);
    Reglament reglament = Reglament::ofOperations({opId});
    reglament.list[0].limits[opId].limits.laps = 50;
    MaintainanceModel model;
    model.updateColumns(&reglament, nullptr);
    model.setItems({car(1, "12", "Sodi", {done(opId, noonOf(1), 1, 1, laps)})});
    MaintainanceFilterProxy proxy;
    proxy.setMaintainanceModel(&model);
    MaintainanceDelegate delegate;
    delegate.setReglament(&reglament);
    QTreeView view;
    view.setPalette(darkPalette());
    show(view, proxy, delegate);

    const QRect cell = inner(view, proxy.index(0, 3));
    const QRect upper = cell.adjusted(0, 0, 0, -cell.height() / 2 - 2);
    const QRect lower = cell.adjusted(0, cell.height() / 2 + 2, 0, 0);
    const QImage image = view.viewport()->grab().toImage();
    QCOMPARE(image.pixelColor(lower.bottomLeft()), band);
    QCOMPARE(image.pixelColor(upper.topLeft()), darkPalette().color(QPalette::Base));
    QVERIFY(textContrast(image, upper, darkPalette().color(QPalette::Base)) >= 7);
    QVERIFY(textContrast(image, lower, band) >= 7);
    // No light stroke is left in the band.
    for (int y = lower.top(); y <= lower.bottom(); ++y) {
        for (int x = lower.left(); x <= lower.right(); ++x)
            QVERIFY(luminance(image.pixelColor(x, y)) <= luminance(band) + 0.01);
    }

    view.setCurrentIndex(proxy.index(0, 3));
    const QImage selected = view.viewport()->grab().toImage();
    const QColor highlight = darkPalette().color(QPalette::Highlight);
    QCOMPARE(selected.pixelColor(lower.bottomLeft()), highlight);
    QVERIFY(textContrast(selected, lower, highlight) >= contrast(Qt::white, highlight) - 0.2);
}

void TestDarkPalette::eachLineIsPaintedInItsHalf()
{
    const Reglament reglament = Reglament::ofOperations({opId});
    MaintainanceModel model;
    model.updateColumns(&reglament, nullptr);
    model.setItems({car(1, "12", "Sodi", {done(opId, noonOf(1), 3600, 2, 3)})});
    MaintainanceFilterProxy proxy;
    proxy.setMaintainanceModel(&model);
    MaintainanceDelegate delegate;
    delegate.setReglament(&reglament);
    const QModelIndex shown = proxy.index(0, 3);
    const QStringList lines = shown.data().toString().split('\n');
    QCOMPARE(lines.size(), 2);

    const QColor paper = darkPalette().color(QPalette::Base);
    const auto paint = [&](const QAbstractItemDelegate &painting, const QModelIndex &index,
                           const QRect &cell) {
        QImage image(200, 80, QImage::Format_ARGB32_Premultiplied);
        image.fill(paper);
        QPainter painter(&image);
        painter.setPen(paper);
        QStyleOptionViewItem option;
        option.rect = cell;
        option.state = QStyle::State_Enabled;
        option.palette = darkPalette();
        painting.paint(&painter, option, index);
        return image;
    };
    constexpr int half = 30;
    const QImage image = paint(delegate, shown, QRect(4, 4, 180, 2 * half));
    for (int line = 0; line < 2; ++line) {
        auto *item = new QStandardItem(lines.at(line));
        item->setData(shown.data(Qt::TextAlignmentRole), Qt::TextAlignmentRole);
        QStandardItemModel plain;
        plain.appendRow(item);
        const QRect part(4, 4 + line * half, 180, half);
        const QImage expected = paint(QStyledItemDelegate(), plain.index(0, 0), part);
        const QRect inside = part.adjusted(2, 2, -3, -3);
        QVERIFY(!inkBounds(expected, inside, paper).isEmpty());
        QCOMPARE(inkBounds(image, inside, line == 0 ? paper : green), inkBounds(expected, inside, paper));
    }
}

void TestDarkPalette::textOverATranslucentSelectionIsDark()
{
    Reglament reglament = Reglament::ofOperations({opId});
    MaintainanceModel model;
    model.updateColumns(&reglament, nullptr);
    model.setItems({car(1, "12", "Sodi", {done(opId, noonOf(1), 1, 1, 1)})});
    MaintainanceFilterProxy proxy;
    proxy.setMaintainanceModel(&model);
    MaintainanceDelegate delegate;
    delegate.setReglament(&reglament);
    QStyleOptionViewItem option;
    option.rect = QRect(4, 4, 180, 60);
    option.state = QStyle::State_Enabled | QStyle::State_Active | QStyle::State_Selected;
    option.palette = darkPalette();
    option.palette.setColor(QPalette::Highlight, QColor(42, 130, 218, 40));
    QImage image(190, 70, QImage::Format_ARGB32_Premultiplied);
    image.fill(option.palette.color(QPalette::Base));
    QPainter painter(&image);
    delegate.paint(&painter, option, proxy.index(0, 3));
    painter.end();

    const QColor shown = image.pixelColor(8, 60);
    QVERIFY(luminance(shown) > 0.4); // the band shows through
    const QRect lower = option.rect.adjusted(3, 32, -3, -3);
    QVERIFY(textContrast(image, lower, shown) >= 7);
}

void TestDarkPalette::aLightPaletteChangesNothing()
{
    ServiceLogModel log;
    ServiceLogItem record;
    record.model = "Sodi";
    record.comment = "Стучит\nслева";
    log.append({record});
    GridDelegate delegate;
    PlainGrid plain;
    QTreeView view;
    QPalette light = view.palette();
    light.setColor(QPalette::Base, Qt::white);
    light.setColor(QPalette::Text, QColor(35, 38, 41));
    view.setPalette(light);
    show(view, log, delegate);
    const QImage image = view.grab().toImage();
    view.setItemDelegate(&plain);
    const QImage expected = view.grab().toImage();
    QCOMPARE(image, expected);
}

GARAGE_TEST(TestDarkPalette)
#include "tst_darkpalette.moc"
