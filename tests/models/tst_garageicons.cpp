#include "resources/garageresources.h"
#include "support/garagetest.h"

#include <QIcon>
#include <QPainter>
#include <QPixmap>

/// The compiled-in icons: there, drawn, and clear on every background and scale.
class TestGarageIcons : public GarageTest
{
    Q_OBJECT
private slots:
    void eachIconIsDrawnInEverySize_data();
    void eachIconIsDrawnInEverySize();
    void noIconIsCutOffAtItsEdges_data() { addNames(); }
    void noIconIsCutOffAtItsEdges();
    void eachIconDiffersFromTheOthers_data() { addNames(); }
    void eachIconDiffersFromTheOthers();
    void eachIconIsReadableOnEveryPalette_data();
    void eachIconIsReadableOnEveryPalette();
    void theArrowsPointApart();
    void theResourcesMayBeAskedForTwice();

private:
    static void addNames();
};

namespace {

const char *const iconNames[] = {"iconMoveLeft", "iconMoveRight", "iconAttention", "iconService"};

QString resourceOf(const QString &name)
{
    return QString(":/icons/%1").arg(name);
}

QImage picture(const QString &name, int side, qreal ratio = 1.0)
{
    initGarageResources();
    QPixmap canvas(QSize(side, side) * ratio);
    canvas.setDevicePixelRatio(ratio);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QIcon(resourceOf(name)).paint(&painter, QRect(0, 0, side, side));
    painter.end();
    QImage image = canvas.toImage().convertToFormat(QImage::Format_ARGB32);
    image.setDevicePixelRatio(1.0);
    return image;
}

int opaquePixels(const QImage &image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 128;
    return count;
}

/// Number of opaque pixels in the columns [from, to).
int opaqueColumns(const QImage &image, int from, int to)
{
    return opaquePixels(image.copy(from, 0, to - from, image.height()));
}

} // namespace

void TestGarageIcons::eachIconIsDrawnInEverySize_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("side");
    QTest::addColumn<qreal>("ratio");
    for (const char *name : iconNames)
        for (const int side : {16, 24, 32, 48})
            for (const qreal ratio : {1.0, 2.0})
                QTest::addRow("%s %d @%gx", name, side, ratio) << name << side << ratio;
}

void TestGarageIcons::eachIconIsDrawnInEverySize()
{
    QFETCH(QString, name);
    QFETCH(int, side);
    QFETCH(qreal, ratio);
    initGarageResources();
    const QIcon icon(resourceOf(name));
    QVERIFY(icon.availableSizes().contains(QSize(48, 48)));
    QCOMPARE(icon.actualSize(QSize(side, side)), QSize(side, side));

    const QImage image = picture(name, side, ratio);
    const int drawn = opaquePixels(image);
    const int area = image.width() * image.height();
    QVERIFY2(drawn > area / 5, "too thin to be seen");
    QVERIFY2(drawn < area * 9 / 10, "a filled square has no shape");
}

void TestGarageIcons::addNames()
{
    QTest::addColumn<QString>("name");
    for (const char *name : iconNames)
        QTest::newRow(name) << name;
}

void TestGarageIcons::noIconIsCutOffAtItsEdges()
{
    QFETCH(QString, name);
    initGarageResources();
    for (const QString &variant : {name, QString(name + "@2x")}) {
        const QImage image(resourceOf(variant));
        QVERIFY(!image.isNull());
        const int last = image.width() - 1;
        for (int i = 0; i <= last; ++i) {
            for (const QPoint &edge : {QPoint(i, 0), QPoint(i, last), QPoint(0, i), QPoint(last, i)})
                QVERIFY2(qAlpha(image.pixel(edge)) < 64, "more than the rim of a smooth outline");
        }
    }
}

void TestGarageIcons::eachIconDiffersFromTheOthers()
{
    QFETCH(QString, name);
    for (const int side : {16, 24, 32, 48}) {
        const QImage image = picture(name, side);
        for (const char *otherName : iconNames) {
            if (name == otherName)
                continue;
            const QImage other = picture(otherName, side);
            int different = 0;
            for (int y = 0; y < side; ++y)
                for (int x = 0; x < side; ++x)
                    different += std::abs(qAlpha(image.pixel(x, y)) - qAlpha(other.pixel(x, y))) > 128;
            QVERIFY2(different > side * side / 20, otherName);
        }
    }
}

void TestGarageIcons::eachIconIsReadableOnEveryPalette_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QColor>("background");
    for (const char *name : iconNames) {
        QTest::addRow("%s on white", name) << name << QColor(Qt::white);
        QTest::addRow("%s on dark", name) << name << QColor(0x2b, 0x2b, 0x2b);
    }
}

void TestGarageIcons::eachIconIsReadableOnEveryPalette()
{
    QFETCH(QString, name);
    QFETCH(QColor, background);
    const QImage image = picture(name, 48);
    int clear = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            const int distance = std::abs(qRed(pixel) - background.red())
                + std::abs(qGreen(pixel) - background.green()) + std::abs(qBlue(pixel) - background.blue());
            clear += qAlpha(pixel) > 128 && distance > 120;
        }
    }
    QVERIFY2(clear * 2 > opaquePixels(image), "most of the icon must stand out");
}

void TestGarageIcons::theArrowsPointApart()
{
    const QImage left = picture("iconMoveLeft", 48);
    const QImage right = picture("iconMoveRight", 48);
    // The head of an arrow is broader than its shaft.
    QVERIFY(opaqueColumns(left, 0, 24) > opaqueColumns(left, 24, 48));
    QVERIFY(opaqueColumns(right, 0, 24) < opaqueColumns(right, 24, 48));
}

void TestGarageIcons::theResourcesMayBeAskedForTwice()
{
    initGarageResources();
    initGarageResources();
    for (const char *name : iconNames)
        QVERIFY(QFile::exists(resourceOf(name)));
}

GARAGE_TEST(TestGarageIcons)
#include "tst_garageicons.moc"
