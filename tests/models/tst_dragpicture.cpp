#include "models/qeditabletreeview.h"
#include "support/garagetest.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPainter>

/// The picture under the mouse while items are dragged.
class TestDragPicture : public GarageTest
{
    Q_OBJECT
private slots:
    void oneItemIsDrawnAsACard_data();
    void oneItemIsDrawnAsACard();
    void severalItemsAreDrawnAsAStack_data();
    void severalItemsAreDrawnAsAStack();
    void theLabelIsCentred_data();
    void theLabelIsCentred();
};

namespace {

QJsonObject item(const QJsonValue &name, const QJsonValue &color)
{
    return {{"name", name}, {"color", color}};
}

/// What a label looks like alone on a filled card, for comparison by pixels.
QImage drawn(const QVector<QRect> &cards, const QColor &fill, const QString &label)
{
    QPixmap pixmap(64, 64);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setPen(Qt::black);
    painter.setBrush(fill);
    for (const QRect &card : cards)
        painter.drawRect(card);
    painter.drawText(QRect(0, 0, 64, 64), Qt::AlignCenter, label);
    painter.end();
    return pixmap.toImage();
}

QImage picture(const QJsonArray &items)
{
    const QPixmap pixmap = QEditableTreeView::dragPixmap(items);
    return pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
}

} // namespace

void TestDragPicture::oneItemIsDrawnAsACard_data()
{
    QTest::addColumn<QJsonArray>("items");
    QTest::addColumn<QColor>("fill");
    // An invalid colour fills with black.
    const QColor none;
    const QString nameless;
    QTest::newRow("red") << QJsonArray {item(nameless, "#ff0000")} << QColor(255, 0, 0);
    QTest::newRow("named") << QJsonArray {item(nameless, "lime")} << QColor(0, 255, 0);
    QTest::newRow("no such colour") << QJsonArray {item(nameless, "kart")} << none;
    QTest::newRow("a number") << QJsonArray {item(nameless, 255)} << none;
    QTest::newRow("no colour") << QJsonArray {QJsonObject()} << none;
    QTest::newRow("no object") << QJsonArray {12} << none;
    QTest::newRow("a name that is a number") << QJsonArray {item(7, "#00f")} << QColor(0, 0, 255);
    QTest::newRow("no item") << QJsonArray() << QColor(255, 255, 255);
}

void TestDragPicture::oneItemIsDrawnAsACard()
{
    QFETCH(QJsonArray, items);
    QFETCH(QColor, fill);
    const QImage image = picture(items);
    QCOMPARE(image.size(), QSize(64, 64));
    // The rectangle's outline is as wide as the pixmap: its last row and column are the outline's own.
    const QColor inside = fill.isValid() ? fill : QColor(Qt::black);
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x) {
            const bool isOutline = x == 0 || y == 0 || x == 63 || y == 63;
            QCOMPARE(image.pixelColor(x, y), isOutline ? QColor(Qt::black) : inside);
        }
    }
}

void TestDragPicture::severalItemsAreDrawnAsAStack_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("two") << 2;
    QTest::newRow("four") << 4;
    QTest::newRow("a thousand") << 1000;
}

void TestDragPicture::severalItemsAreDrawnAsAStack()
{
    QFETCH(int, count);
    QJsonArray items;
    for (int i = 0; i < count; ++i)
        items.append(item("K7", "#ff0000"));
    const QImage image = picture(items);
    QCOMPARE(image.size(), QSize(64, 64));
    // Fill and outline of the three cards, and clear corners beside them.
    for (const QPoint &white : {QPoint(2, 2), QPoint(6, 6), QPoint(10, 10), QPoint(2, 44), QPoint(50, 6)})
        QCOMPARE(image.pixelColor(white), QColor(Qt::white));
    for (const QPoint &black : {QPoint(0, 0), QPoint(47, 0), QPoint(0, 47), QPoint(4, 4), QPoint(8, 8),
                                QPoint(63, 8), QPoint(8, 63), QPoint(63, 63)})
        QCOMPARE(image.pixelColor(black), QColor(Qt::black));
    for (const QPoint &clear : {QPoint(63, 0), QPoint(0, 63), QPoint(49, 2), QPoint(2, 49), QPoint(63, 6)})
        QCOMPARE(image.pixelColor(clear).alpha(), 0);
}

void TestDragPicture::theLabelIsCentred_data()
{
    QTest::addColumn<QJsonArray>("items");
    QTest::addColumn<QString>("label");
    QTest::newRow("a name") << QJsonArray {item("K7", "#ff0000")} << "K7";
    QTest::newRow("a long name") << QJsonArray {item("Замена масла %1 & <b>", "#ff0000")}
                                 << "Замена масла %1 & <b>";
    QJsonArray three;
    for (int i = 0; i < 3; ++i)
        three.append(item("K7", "#ff0000"));
    QTest::newRow("a number") << three << "x 3";
}

void TestDragPicture::theLabelIsCentred()
{
    QFETCH(QJsonArray, items);
    QFETCH(QString, label);
    const bool isOne = items.size() == 1;
    const QVector<QRect> cards = isOne ? QVector<QRect> {{0, 0, 63, 63}}
                                       : QVector<QRect> {{0, 0, 47, 47}, {4, 4, 51, 51}, {8, 8, 55, 55}};
    const QColor fill = isOne ? QColor(255, 0, 0) : QColor(Qt::white);
    QCOMPARE(QEditableTreeView::dragPixmap(items).toImage(), drawn(cards, fill, label));
    QVERIFY(QEditableTreeView::dragPixmap(items).toImage() != drawn(cards, fill, {}));
}

GARAGE_TEST(TestDragPicture)
#include "tst_dragpicture.moc"
