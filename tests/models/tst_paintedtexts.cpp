#include "models/griddelegate.h"
#include "models/outline.h"
#include "models/plaintext.h"
#include "support/garagetest.h"

#include <QPainter>
#include <QStandardItemModel>
#include <QTreeView>

namespace {

/// What the tables' delegate promises, painted by Qt alone.
class QtGrid : public QStyledItemDelegate
{
public:
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::paint(painter, option, index);
        painter->setPen(option.palette.color(QPalette::Midlight));
        painter->drawRect(option.rect);
    }
    QString displayText(const QVariant &value, const QLocale &locale) const override
    {
        const QString text = value.toString();
        const bool isHuge = text.size() > 10000 || text.count('\n') >= 100;
        return QStyledItemDelegate::displayText(isHuge ? PlainText::firstLines(text, 10, 1000) : text,
                                                locale);
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->showDecorationSelected = true;
    }
};

QImage painted(const QStyledItemDelegate &delegate, const QStyleOptionViewItem &option,
               const QModelIndex &cell, qreal ratio = 1)
{
    QImage image((option.rect.size() + QSize(20, 20)) * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    delegate.paint(&painter, option, cell);
    return image;
}

QStyleOptionViewItem cellOption(const QRect &rect)
{
    QStyleOptionViewItem option;
    option.rect = rect;
    option.state = QStyle::State_Enabled | QStyle::State_Active;
    return option;
}

} // namespace

/// Texts are painted, and their rows as high, as if Qt laid out each whole text each time.
class TestPaintedTexts : public GarageTest
{
    Q_OBJECT
private slots:
    void aTextIsPaintedAsQtPaintsIt_data();
    void aTextIsPaintedAsQtPaintsIt();
    void aChangedCellIsPaintedAnew();
    void aLongTextIsPaintedAsQtPaintsIt_data();
    void aLongTextIsPaintedAsQtPaintsIt();
    void aRowIsAsHighAsItsTextIs_data();
    void aRowIsAsHighAsItsTextIs();
    void aRowFollowsTheFontAndTheStyleSheet();
    void anOutlineIsThatOfARectangle_data();
    void anOutlineIsThatOfARectangle();
};

void TestPaintedTexts::aTextIsPaintedAsQtPaintsIt_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << "";
    QTest::newRow("date") << "21.11.2026 22:14";
    QTest::newRow("Russian") << "Масло, «Rotax» — №5";
    QTest::newRow("two lines") << "21.11.2026 22:14\n1.5 ч., 3 з., 41 кр.";
    QTest::newRow("blanks at the ends") << "  a \n b  ";
    QTest::newRow("an empty line") << "a\n\nb";
    QTest::newRow("Hebrew") << QString::fromUtf8("שמן 5W-30 חדש");
    QTest::newRow("accents") << QString::fromUtf8("e\u0301e\u0301 \U0001F3CE");
    QTest::newRow("a tab") << "a\tb";
    QTest::newRow("too high") << "1\n2\n3\n4\n5\n6\n7\n8\n9";
    QTest::newRow("too wide") << "This text is a good deal wider than the cell that it is painted in";
}

void TestPaintedTexts::aTextIsPaintedAsQtPaintsIt()
{
    QFETCH(QString, text);
    QStandardItemModel model(1, 1);
    const QModelIndex cell = model.index(0, 0);
    model.setData(cell, text);
    const GridDelegate delegate;
    const QtGrid plain;
    const QStyle::State usual = QStyle::State_Enabled | QStyle::State_Active;
    const QVector<QStyle::State> states {usual,
                                         usual | QStyle::State_Selected,
                                         QStyle::State_Enabled,
                                         QStyle::State_Enabled | QStyle::State_Selected,
                                         QStyle::State_None,
                                         usual | QStyle::State_MouseOver};
    const QVector<int> alignments {Qt::AlignLeft, Qt::AlignRight, Qt::AlignCenter,
                                   Qt::AlignRight | Qt::AlignVCenter, Qt::AlignLeft | Qt::AlignBottom};
    for (const int alignment : alignments) {
        model.setData(cell, alignment, Qt::TextAlignmentRole);
        for (const QStyle::State state : states) {
            for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
                QStyleOptionViewItem option = cellOption({5, 7, 221, 65});
                option.state = state;
                option.direction = direction;
                for (const qreal ratio : {1.0, 1.5}) {
                    const QImage expected = painted(plain, option, cell, ratio);
                    for (const char *time : {"first time", "again"})
                        QVERIFY2(painted(delegate, option, cell, ratio) == expected, time);
                }
            }
        }
    }
}

void TestPaintedTexts::aChangedCellIsPaintedAnew()
{
    QStandardItemModel model(1, 1);
    const QModelIndex cell = model.index(0, 0);
    const GridDelegate delegate;
    const QtGrid plain;
    QStyleOptionViewItem option = cellOption({5, 7, 221, 65});
    const auto isAsQtPaintsIt = [&] {
        return painted(delegate, option, cell) == painted(plain, option, cell);
    };
    model.setData(cell, "21.11.2026");
    QVERIFY(isAsQtPaintsIt());
    model.setData(cell, "22.11.2026");
    QVERIFY(isAsQtPaintsIt());
    model.setData(cell, QBrush(QColor(255, 127, 127)), Qt::BackgroundRole);
    QVERIFY(isAsQtPaintsIt());
    option.rect.setWidth(50);
    QVERIFY(isAsQtPaintsIt());
    option.rect.setWidth(231);
    QVERIFY(isAsQtPaintsIt());
    option.font.setPointSize(7);
    option.fontMetrics = QFontMetrics(option.font);
    QVERIFY(isAsQtPaintsIt());
    option.palette.setColor(QPalette::Text, Qt::blue);
    QVERIFY(isAsQtPaintsIt());
    QPixmap icon(16, 16);
    icon.fill(Qt::red);
    model.setData(cell, QIcon(icon), Qt::DecorationRole);
    QVERIFY(isAsQtPaintsIt());
    model.setData(cell, Qt::Checked, Qt::CheckStateRole);
    QVERIFY(isAsQtPaintsIt());
}

void TestPaintedTexts::aLongTextIsPaintedAsQtPaintsIt_data()
{
    QTest::addColumn<QString>("text");
    const QString word = "слово ";
    QTest::newRow("one line") << word.repeated(1500);
    QTest::newRow("a megabyte") << word.repeated(200000);
    QTest::newRow("long lines") << QString(word.repeated(200) + "\n").repeated(4);
    QTest::newRow("a short line and a long one") << "short\n" + word.repeated(1000);
    QTest::newRow("no blank") << QString(9000, 'w');
    QTest::newRow("narrow letters") << QString(9000, 'i');
    QTest::newRow("accents without end") << "e" + QString(3000, QChar(0x0301)) + word.repeated(50);
    QTest::newRow("without width") << QString(3000, QChar(0x200b)) + "at the end";
    QTest::newRow("Hebrew") << QString::fromUtf8("שמן 5W-30 ").repeated(500);
    QTest::newRow("both directions") << QString::fromUtf8("oil שמן ").repeated(800);
    QTest::newRow("pairs") << QString::fromUtf8("\U0001F3CE").repeated(2000);
}

void TestPaintedTexts::aLongTextIsPaintedAsQtPaintsIt()
{
    QFETCH(QString, text);
    QStandardItemModel model(1, 1);
    const QModelIndex cell = model.index(0, 0);
    model.setData(cell, text);
    const GridDelegate delegate;
    const QtGrid plain;
    for (const int width : {1, 40, 241}) {
        for (const Qt::TextElideMode mode : {Qt::ElideRight, Qt::ElideMiddle}) {
            for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
                QStyleOptionViewItem option = cellOption({5, 7, width, 85});
                option.textElideMode = mode;
                option.direction = direction;
                QVERIFY2(painted(delegate, option, cell) == painted(plain, option, cell),
                         qPrintable(QString("%1 pixels, mode %2").arg(width).arg(mode)));
            }
        }
    }
}

void TestPaintedTexts::aRowIsAsHighAsItsTextIs_data()
{
    aTextIsPaintedAsQtPaintsIt_data();
    QTest::newRow("many lines") << QString("Стук слева\n").repeated(60);
    QTest::newRow("Chinese") << QString::fromUtf8("油");
    QTest::newRow("huge") << QString("Стук слева\n").repeated(6000);
}

void TestPaintedTexts::aRowIsAsHighAsItsTextIs()
{
    QFETCH(QString, text);
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), text);
    QTreeView view;
    GridDelegate delegate;
    const QtGrid plain;
    view.setModel(&model);
    view.setItemDelegate(&delegate);
    view.show();
    for (const int pointSize : {7, 9, 14}) {
        QFont font = view.font();
        font.setPointSize(pointSize);
        view.setFont(font);
        QStyleOptionViewItem option = cellOption({});
        option.widget = &view;
        option.font = font;
        option.fontMetrics = QFontMetrics(font);
        QCOMPARE(view.visualRect(model.index(0, 0)).height(),
                 plain.sizeHint(option, model.index(0, 0)).height());
    }
}

void TestPaintedTexts::aRowFollowsTheFontAndTheStyleSheet()
{
    QStandardItemModel model(1, 1);
    const QModelIndex cell = model.index(0, 0);
    model.setData(cell, "21.11.2026");
    QTreeView view;
    GridDelegate delegate;
    view.setModel(&model);
    view.setItemDelegate(&delegate);
    view.show();
    const int usual = view.visualRect(cell).height();

    view.setStyleSheet("QTreeView::item { padding: 10px }");
    QTRY_VERIFY(view.visualRect(cell).height() >= usual + 20);
    view.setStyleSheet("QTreeView::item { padding: 30px }");
    QTRY_VERIFY(view.visualRect(cell).height() >= usual + 60);
    view.setStyleSheet({});
    QTRY_COMPARE(view.visualRect(cell).height(), usual);

    QFont large = view.font();
    large.setPointSize(30);
    model.setData(cell, large, Qt::FontRole);
    view.doItemsLayout();
    QVERIFY(view.visualRect(cell).height() > usual + 10);
}

void TestPaintedTexts::anOutlineIsThatOfARectangle_data()
{
    QTest::addColumn<QPen>("pen");
    QTest::newRow("opaque") << QPen(Qt::red);
    QTest::newRow("cosmetic") << QPen(Qt::red, 0);
    QTest::newRow("wide") << QPen(Qt::red, 3);
    QTest::newRow("dotted") << QPen(Qt::red, 1, Qt::DotLine);
    QTest::newRow("none") << QPen(Qt::NoPen);
    QTest::newRow("translucent") << QPen(QColor(255, 0, 0, 128));
    QTest::newRow("pattern") << QPen(QBrush(Qt::red, Qt::Dense4Pattern), 1);
}

void TestPaintedTexts::anOutlineIsThatOfARectangle()
{
    QFETCH(QPen, pen);
    const auto picture = [&](const QRect &rect, const QTransform &transform, qreal ratio,
                             const QPainter::RenderHints &hints, const QBrush &brush, auto draw) {
        QImage image(QSize(60, 50) * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHints(hints);
        painter.setTransform(transform);
        painter.setPen(pen);
        painter.setBrush(brush);
        painter.setClipRect(QRect(0, 0, 40, 45));
        draw(painter, rect);
        return image;
    };
    const QVector<QTransform> transforms {{},
                                          QTransform::fromTranslate(3, 2),
                                          QTransform::fromTranslate(3.5, 2.25),
                                          QTransform::fromScale(1.5, 2),
                                          QTransform().rotate(20)};
    for (const QRect &rect : {QRect(4, 5, 30, 20), QRect(4, 5, 90, 2), QRect(4, 5, 1, 20), QRect(4, 5, 0, 0),
                              QRect(10, 10, -4, -4)}) {
        for (const QTransform &transform : transforms) {
            for (const qreal ratio : {1.0, 2.0}) {
                for (const QPainter::RenderHints hints :
                     {QPainter::RenderHints(), QPainter::RenderHints(QPainter::Antialiasing)}) {
                    for (const QBrush &brush : {QBrush(), QBrush(Qt::green)}) {
                        const auto plain = [](QPainter &painter, const QRect &outlined) {
                            painter.drawRect(outlined);
                        };
                        const auto ours = [](QPainter &painter, const QRect &outlined) {
                            paintOutline(painter, outlined);
                        };
                        QVERIFY(picture(rect, transform, ratio, hints, brush, ours)
                                == picture(rect, transform, ratio, hints, brush, plain));
                    }
                }
            }
        }
    }
}

GARAGE_TEST(TestPaintedTexts)
#include "tst_paintedtexts.moc"
