#include "models/griddelegate.h"
#include "support/garagetest.h"

#include <QPainter>
#include <QStandardItemModel>
#include <QToolTip>
#include <QTreeView>

/// What a table cell looks like: a grid, and never a focus frame.
class TestGridDelegate : public GarageTest
{
    Q_OBJECT
private slots:
    void eachCellHasAGridAndNoFocusFrame_data();
    void eachCellHasAGridAndNoFocusFrame();
    void theEditorFillsTheCell();
    void aSelectedCellIsFilledWhole();
    void aTextThatIsCutOffIsShownAsAToolTip();
};

void TestGridDelegate::eachCellHasAGridAndNoFocusFrame_data()
{
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("100 %") << 1.0;
    QTest::newRow("200 %") << 2.0;
}

void TestGridDelegate::eachCellHasAGridAndNoFocusFrame()
{
    QFETCH(qreal, ratio);
    QStandardItemModel model(1, 1);
    const GridDelegate delegate;
    const QRect cell(4, 4, 40, 20);
    const auto paint = [&](QStyle::State state) {
        QImage image(QSize(60, 40) * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::white);
        QPainter painter(&image);
        QStyleOptionViewItem option;
        option.rect = cell;
        option.state = state;
        option.palette.setColor(QPalette::Midlight, Qt::blue);
        delegate.paint(&painter, option, model.index(0, 0));
        return image;
    };
    const QImage plain = paint(QStyle::State_Enabled);
    const QImage focused =
        paint(QStyle::State_Enabled | QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange);
    QCOMPARE(focused, plain);

    const auto pixel = [&](const QPoint &at) { return plain.pixelColor(at * ratio); };
    for (const QPoint &border : {QPoint(4, 10), QPoint(44, 10), QPoint(20, 4), QPoint(20, 24)})
        QCOMPARE(pixel(border), QColor(Qt::blue));
    for (const QPoint &clear : {QPoint(3, 10), QPoint(6, 10), QPoint(42, 10), QPoint(46, 10), QPoint(20, 6)})
        QCOMPARE(pixel(clear), QColor(Qt::white));
}

void TestGridDelegate::theEditorFillsTheCell()
{
    const GridDelegate delegate;
    QWidget editor;
    QStyleOptionViewItem option;
    option.rect = QRect(7, 9, 123, 21);
    delegate.updateEditorGeometry(&editor, option, {});
    QCOMPARE(editor.geometry(), option.rect);
}

void TestGridDelegate::aSelectedCellIsFilledWhole()
{
    class Opened : public GridDelegate
    {
    public:
        using GridDelegate::initStyleOption;
    };
    QStandardItemModel model(1, 1);
    QStyleOptionViewItem option;
    option.showDecorationSelected = false;
    Opened().initStyleOption(&option, model.index(0, 0));
    QVERIFY(option.showDecorationSelected);
}

void TestGridDelegate::aTextThatIsCutOffIsShownAsAToolTip()
{
    QStandardItemModel model(3, 1);
    model.setData(model.index(0, 0), "short");
    model.setData(model.index(1, 0), "<b>a long text that looks like markup</b> and does not fit");
    model.setData(model.index(2, 0), "two\nlines");
    QTreeView view;
    GridDelegate delegate;
    view.setUniformRowHeights(true);
    view.setItemDelegate(&delegate);
    view.setModel(&model);
    view.setColumnWidth(0, 120);
    view.resize(300, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));

    const auto hover = [&view](const QModelIndex &index) {
        const QPoint at = view.visualRect(index).center();
        QHelpEvent event(QEvent::ToolTip, at, view.viewport()->mapToGlobal(at));
        QApplication::sendEvent(view.viewport(), &event);
    };
    hover(model.index(1, 0));
    QVERIFY(QToolTip::isVisible());
    QVERIFY(QToolTip::text().contains("&lt;b&gt;a long text"));
    QVERIFY(QToolTip::text().endsWith("does not fit</span>"));
    hover(model.index(0, 0));
    QTRY_VERIFY(!QToolTip::isVisible() || QToolTip::text().isEmpty());
    hover(model.index(2, 0));
    QVERIFY(QToolTip::isVisible());
    QVERIFY(QToolTip::text().contains("two\u2028lines"));
}

GARAGE_TEST(TestGridDelegate)
#include "tst_griddelegate.moc"
