#include "models/condensedfont.h"
#include "models/griddelegate.h"
#include "models/plaintext.h"
#include "support/garagetest.h"

#include <QElapsedTimer>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QStandardItemModel>
#include <QToolTip>
#include <QTreeView>

namespace {

/// A view of one column, as wide as the text of its first cell needs, divided by `excess`.
class OneCell
{
public:
    explicit OneCell(const QString &text, qreal excess = 1) : model(1, 1)
    {
        model.setData(model.index(0, 0), text);
        view.setItemDelegate(&delegate);
        view.setModel(&model);
        view.header()->setStretchLastSection(false);
        view.setRootIsDecorated(false);
        view.setUniformRowHeights(false);
        view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        view.resize(900, 445);
        const int margins = 2 * (view.style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 1);
        const qreal whole = QFontMetricsF(view.font()).horizontalAdvance(text);
        view.setColumnWidth(0, margins + int(std::ceil(whole / excess)));
        view.show();
    }

    QModelIndex cell() const { return model.index(0, 0); }
    QImage painted() const { return view.viewport()->grab(view.visualRect(cell())).toImage(); }
    QString toolTip() const
    {
        const QPoint at = view.visualRect(cell()).topLeft() + QPoint(5, 5);
        QHelpEvent event(QEvent::ToolTip, at, view.viewport()->mapToGlobal(at));
        QApplication::sendEvent(view.viewport(), &event);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    }
    static QLabel *shownToolTip()
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->inherits("QTipLabel"))
                return qobject_cast<QLabel *>(widget);
        }
        return nullptr;
    }

    QStandardItemModel model;
    GridDelegate delegate;
    QTreeView view;
};

/// The dark pixels in the last columns of a cell, where the end of a text stands that fits.
int inkAtTheEnd(const QImage &cell)
{
    int ink = 0;
    for (int x = cell.width() - 14; x < cell.width() - 3; ++x) {
        for (int y = 3; y < cell.height() - 3; ++y)
            ink += qGray(cell.pixel(x, y)) < 128 ? 1 : 0;
    }
    return ink;
}

} // namespace

/// Texts that are too wide, too high or too long for their cell.
class TestCondensedCells : public GarageTest
{
    Q_OBJECT
private slots:
    void aFontIsCondensedByNoMoreThanNeeded_data();
    void aFontIsCondensedByNoMoreThanNeeded();
    void aTextThatFitsIsPaintedAsQtPaintsIt();
    void aTextALittleTooWideIsShownToItsEnd_data();
    void aTextALittleTooWideIsShownToItsEnd();
    void aTextMuchTooWideIsElidedAndHasAToolTip();
    void theRowOfAHugeCommentDoesNotExceedTheView_data();
    void theRowOfAHugeCommentDoesNotExceedTheView();
    void aLongCommentIsShownWhole();
    void aMegabyteIsPaintedQuickly();
    void aToolTipLeavesThePointerFree_data();
    void aToolTipLeavesThePointerFree();
    void firstLinesEndWithAnEllipsis_data();
    void firstLinesEndWithAnEllipsis();
};

void TestCondensedCells::aFontIsCondensedByNoMoreThanNeeded_data()
{
    QTest::addColumn<int>("pointSize");
    for (int pointSize : {8, 9, 10, 13, 18})
        QTest::addRow("%d points", pointSize) << pointSize;
}

void TestCondensedCells::aFontIsCondensedByNoMoreThanNeeded()
{
    QFETCH(int, pointSize);
    QFont font = QApplication::font();
    font.setPointSize(pointSize);
    const QString text = "21.11.2026 22:14\n1.2 ч.";
    const int whole = int(std::ceil(QFontMetricsF(font).horizontalAdvance("21.11.2026 22:14")));

    QCOMPARE(condensedFont(text, font, whole), std::make_optional(font));
    for (int width = whole - 1; width * 1.15 >= whole; --width) {
        const std::optional<QFont> condensed = condensedFont(text, font, width);
        QVERIFY2(condensed, qPrintable(QString("%1 of %2 pixels").arg(width).arg(whole)));
        const qreal advance = QFontMetricsF(*condensed).horizontalAdvance("21.11.2026 22:14");
        QVERIFY(advance <= width);
        QVERIFY(advance > width * 0.93);
    }
    QVERIFY(!condensedFont(text, font, int(whole / 1.15) - 1));
    QVERIFY(!condensedFont(text, font, 0));
    QCOMPARE(condensedFont({}, font, 10), std::make_optional(font));
}

void TestCondensedCells::aTextThatFitsIsPaintedAsQtPaintsIt()
{
    OneCell shown("21.11.2026 22:14");
    const QImage fitting = shown.painted();
    class Grid : public QStyledItemDelegate
    {
    public:
        void paint(QPainter *painter, const QStyleOptionViewItem &option,
                   const QModelIndex &index) const override
        {
            QStyledItemDelegate::paint(painter, option, index);
            painter->setPen(option.palette.color(QPalette::Midlight));
            painter->drawRect(option.rect);
        }
    } plain;
    shown.view.setItemDelegate(&plain);
    QCOMPARE(fitting, shown.painted());
}

void TestCondensedCells::aTextALittleTooWideIsShownToItsEnd_data()
{
    QTest::addColumn<qreal>("excess");
    QTest::newRow("2 %") << 1.02;
    QTest::newRow("8 %") << 1.08;
    QTest::newRow("14 %") << 1.14;
}

void TestCondensedCells::aTextALittleTooWideIsShownToItsEnd()
{
    QFETCH(qreal, excess);
    const QString text = "21.11.2026 22:HH";
    OneCell shown(text, excess);
    QVERIFY(inkAtTheEnd(shown.painted()) > 15); // an ellipsis has a few pixels at most
    QCOMPARE(shown.toolTip(), QString());
}

void TestCondensedCells::aTextMuchTooWideIsElidedAndHasAToolTip()
{
    OneCell shown("21.11.2026 22:HH", 1.3);
    QVERIFY(inkAtTheEnd(shown.painted()) < 15);
    QVERIFY(shown.toolTip().contains("21.11.2026 22:HH"));
}

void TestCondensedCells::theRowOfAHugeCommentDoesNotExceedTheView_data()
{
    QTest::addColumn<QString>("comment");
    QTest::newRow("101 lines") << QString("A line of the comment\n").repeated(101);
    QTest::newRow("5,000 lines") << QString("A line of the comment\n").repeated(5000);
    QTest::newRow("a megabyte of line feeds") << QString(1 << 20, '\n');
    QTest::newRow("a megabyte in one line") << QString(1 << 20, 'x');
}

void TestCondensedCells::theRowOfAHugeCommentDoesNotExceedTheView()
{
    QFETCH(QString, comment);
    OneCell shown("width");
    shown.view.setColumnWidth(0, 500);
    shown.model.setData(shown.cell(), comment);
    for (int pointSize : {9, 14, 18}) {
        QFont font = shown.view.font();
        font.setPointSize(pointSize);
        shown.view.setFont(font);
        const int row = shown.view.visualRect(shown.cell()).height();
        QVERIFY2(row <= shown.view.viewport()->height(), qPrintable(QString::number(row)));
    }
    QVERIFY(!shown.toolTip().isEmpty());
}

void TestCondensedCells::aLongCommentIsShownWhole()
{
    OneCell shown("width");
    shown.view.setColumnWidth(0, 500);
    QStringList lines;
    for (int line = 1; line <= 60; ++line)
        lines.append(QString::number(line));
    shown.model.setData(shown.cell(), lines.join('\n'));
    QVERIFY(shown.view.visualRect(shown.cell()).height() >= 60 * shown.view.fontMetrics().height());
    QCOMPARE(shown.toolTip(), QString());
}

void TestCondensedCells::aMegabyteIsPaintedQuickly()
{
    OneCell shown("width");
    shown.view.setColumnWidth(0, 500);
    shown.model.setRowCount(30);
    for (int row = 0; row < 30; ++row)
        shown.model.setData(shown.model.index(row, 0),
                            QString(1 << 20, QLatin1Char(row % 2 == 0 ? 'x' : '\n')));
    shown.view.grab();
    QElapsedTimer timer;
    timer.start();
    shown.view.doItemsLayout();
    shown.view.grab();
    QVERIFY2(timer.elapsed() < 1500, qPrintable(QString::number(timer.elapsed())));
}

void TestCondensedCells::aToolTipLeavesThePointerFree_data()
{
    QTest::addColumn<QString>("comment");
    QTest::newRow("lines") << QString("A line of the comment\n").repeated(5000);
    QTest::newRow("words") << QString("слово ").repeated(20000);
    QTest::newRow("no blank") << QString(100000, QChar(0x0429));
    QTest::newRow("line feeds") << QString(100000, '\n');
}

void TestCondensedCells::aToolTipLeavesThePointerFree()
{
    QFETCH(QString, comment);
    OneCell shown("width");
    shown.model.setData(shown.cell(), comment);
    const QRect screen = shown.view.screen()->availableGeometry();
    for (int y : {0, screen.height() / 3, screen.height() / 2, screen.height() - 100}) {
        shown.view.move(10, y);
        QToolTip::hideText();
        QTRY_VERIFY(!QToolTip::isVisible());
        QVERIFY(!shown.toolTip().isEmpty());
        const QLabel *toolTip = OneCell::shownToolTip();
        QVERIFY(toolTip);
        const QPoint pointer =
            shown.view.viewport()->mapToGlobal(shown.view.visualRect(shown.cell()).topLeft() + QPoint(5, 5));
        QVERIFY2(!toolTip->geometry().contains(pointer), qPrintable(QString::number(toolTip->height())));
        QVERIFY(toolTip->height() < screen.height() / 2);
        QVERIFY(toolTip->height() <= 23 * QFontMetrics(QToolTip::font()).lineSpacing());
    }
}

void TestCondensedCells::firstLinesEndWithAnEllipsis_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("nothing") << ""
                             << "";
    QTest::newRow("one line") << "abcd"
                              << "abcd";
    QTest::newRow("one line of two") << "abcdefgh"
                                     << "abcdefgh";
    QTest::newRow("one line too long") << "abcdefghi"
                                       << "abcdefgh…";
    QTest::newRow("two lines") << "ab\ncd"
                               << "ab\ncd";
    QTest::newRow("three lines") << "ab\ncd\nef"
                                 << "ab\ncd…";
    QTest::newRow("a line end after the last") << "ab\ncd\n"
                                               << "ab\ncd…";
    QTest::newRow("a line of two and another") << "abcdef\ngh"
                                               << "abcdef…";
    QTest::newRow("line separators") << "ab\u2028cd\u2028ef"
                                     << "ab\u2028cd…";
    QTest::newRow("a surrogate pair at the end") << "abcdefg\U0001F3CE"
                                                 << "abcdefg…";
}

void TestCondensedCells::firstLinesEndWithAnEllipsis()
{
    QFETCH(QString, text);
    QTEST(PlainText::firstLines(text, 2, 4), "shown");
}

GARAGE_TEST(TestCondensedCells)
#include "tst_condensedcells.moc"
