#include "models/cellflags.h"
#include "models/qgaragetreeview.h"
#include "support/garagetest.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardItemModel>

/// The buttons that follow the mouse over the maintenance table.
class TestQGarageTreeView : public GarageTest
{
    Q_OBJECT
private slots:
    void theSignalsAndTheSlotComeInOrder();
    void bothButtonsStartHidden();
    void eachCellOffersTheButtonsOfItsFlags_data();
    void eachCellOffersTheButtonsOfItsFlags();
    void theButtonIsASquareInTheCellsCorner_data();
    void theButtonIsASquareInTheCellsCorner();
    void theMouseSwapsAndHidesTheButtons();
    void theButtonStaysWhenThePointerLeaves();
    void aClickMakesTheCellCurrentFirst();
    void afterScrollingTheClickMeansTheCellUnderTheButton_data();
    void afterScrollingTheClickMeansTheCellUnderTheButton();
    void scrollingSidewaysLeavesTheButton();
    void aButtonWhoseCellIsGoneDoesNothing();
    void movingWithAPressedButtonSelectsNothing();
    void aCallThatNoButtonMadeIsIgnored();
    void aClickLeavesTheFocusInTheTable_data();
    void aClickLeavesTheFocusInTheTable();
    void theButtonsHaveAccessibleNames();
    void theReceiverMayDestroyTheView();
    void aViewWithoutAModelIsQuiet();
    void theArrowKeysSkipHiddenColumns();
};

namespace {

/// Columns: "#" with neither bit, number with attention, operation with service, one with both.
enum Column { Position, Number, Operation, Both, ColumnCount };

class FlaggedModel final : public QStandardItemModel
{
public:
    explicit FlaggedModel(int rows) : QStandardItemModel(rows, ColumnCount)
    {
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < ColumnCount; ++column)
                setItem(row, column, new QStandardItem(QString("%1-%2").arg(row).arg(column)));
    }

    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        const int base = int(QStandardItemModel::flags(index));
        switch (index.isValid() ? index.column() : int(Position)) {
        case Number:
            return Qt::ItemFlags(base | CellFlags::attention);
        case Operation:
            return Qt::ItemFlags(base | CellFlags::service);
        case Both:
            return Qt::ItemFlags(base | CellFlags::attention | CellFlags::service);
        default:
            return Qt::ItemFlags(base);
        }
    }
};

struct Sample
{
    explicit Sample(int rows = 4)
        : model(rows), tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal)
    {
        view.setMouseTracking(true);
        view.setRootIsDecorated(false);
        view.header()->setDefaultSectionSize(100);
        view.header()->setMinimumSectionSize(20);
        view.setModel(&model);
        view.resize(450, 220);
    }

    bool show()
    {
        view.show();
        return QTest::qWaitForWindowExposed(&view);
    }

    QPushButton *service() const { return buttons().value(0); }
    QPushButton *attention() const { return buttons().value(1); }
    QList<QPushButton *> buttons() const
    {
        return view.viewport()->findChildren<QPushButton *>(QString(), Qt::FindDirectChildrenOnly);
    }

    void hover(int row, int column) { hover(view.visualRect(model.index(row, column)).center()); }
    /// From next to the point: a pointer that is there already would not move.
    void hover(const QPoint &at)
    {
        QTest::mouseMove(view.viewport(), at + QPoint(1, 0));
        QTest::mouseMove(view.viewport(), at);
    }

    FlaggedModel model;
    QAbstractItemModelTester tester;
    QGarageTreeView view;
};

QPoint belowTheRows(const Sample &sample)
{
    const QRect last = sample.view.visualRect(sample.model.index(sample.model.rowCount() - 1, 0));
    return last.bottomLeft() + QPoint(10, 20);
}

} // namespace

void TestQGarageTreeView::theSignalsAndTheSlotComeInOrder()
{
    const QMetaObject &meta = QGarageTreeView::staticMetaObject;
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        names.append(meta.method(i).methodSignature());
    QCOMPARE(names,
             QStringList({"serviceButtonClicked(QModelIndex)", "attentionButtonClicked(QModelIndex)",
                          "serviceButtonClick()"}));
}

void TestQGarageTreeView::bothButtonsStartHidden()
{
    Sample sample;
    QVERIFY(sample.show());
    QCOMPARE(sample.buttons().size(), 2);
    for (const QPushButton *button : sample.buttons()) {
        QVERIFY(!button->isVisible());
        QVERIFY(!button->icon().isNull());
        QVERIFY(!button->icon().pixmap(16).isNull());
        QVERIFY(button->text().isEmpty());
        QVERIFY(button->toolTip().isEmpty());
        QVERIFY(!button->isFlat());
    }
    const auto picture = [](const QPushButton *button) { return button->icon().pixmap(48).toImage(); };
    const auto resource = [](const char *name) {
        return QIcon(QString(":/icons/") + name).pixmap(48).toImage();
    };
    QCOMPARE(picture(sample.service()), resource("iconService"));
    QCOMPARE(picture(sample.attention()), resource("iconAttention"));
}

void TestQGarageTreeView::eachCellOffersTheButtonsOfItsFlags_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("offersService");
    QTest::addColumn<bool>("offersAttention");
    QTest::newRow("neither bit") << int(Position) << false << false;
    QTest::newRow("attention bit") << int(Number) << false << true;
    QTest::newRow("service bit") << int(Operation) << true << false;
    QTest::newRow("both bits: service wins") << int(Both) << true << false;
}

void TestQGarageTreeView::eachCellOffersTheButtonsOfItsFlags()
{
    QFETCH(int, column);
    QFETCH(bool, offersService);
    QFETCH(bool, offersAttention);
    Sample sample;
    QVERIFY(sample.show());
    sample.hover(1, column == Number ? Operation : Number);
    sample.hover(1, column);
    QCOMPARE(sample.service()->isVisible(), offersService);
    QCOMPARE(sample.attention()->isVisible(), offersAttention);
}

void TestQGarageTreeView::theButtonIsASquareInTheCellsCorner_data()
{
    QTest::addColumn<int>("pointSize");
    QTest::newRow("small font") << 8;
    QTest::newRow("tall font") << 24;
}

void TestQGarageTreeView::theButtonIsASquareInTheCellsCorner()
{
    QFETCH(int, pointSize);
    Sample sample;
    QFont font = sample.view.font();
    font.setPointSize(pointSize);
    sample.view.setFont(font);
    QVERIFY(sample.show());
    for (const int column : {int(Operation), int(Number)}) {
        sample.hover(2, column);
        const QRect cell = sample.view.visualRect(sample.model.index(2, column));
        const QPushButton *button = column == Operation ? sample.service() : sample.attention();
        QVERIFY(cell.height() >= pointSize);
        QCOMPARE(button->geometry(), QRect(cell.topLeft(), QSize(cell.height(), cell.height())));
    }
}

void TestQGarageTreeView::theMouseSwapsAndHidesTheButtons()
{
    Sample sample;
    QVERIFY(sample.show());
    sample.hover(0, Operation);
    QVERIFY(sample.service()->isVisible());
    sample.hover(0, Number);
    QVERIFY(!sample.service()->isVisible());
    QVERIFY(sample.attention()->isVisible());
    sample.hover(belowTheRows(sample));
    QVERIFY(!sample.service()->isVisible());
    QVERIFY(!sample.attention()->isVisible());
}

void TestQGarageTreeView::theButtonStaysWhenThePointerLeaves()
{
    Sample sample;
    QVERIFY(sample.show());
    sample.hover(0, Operation);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(sample.view.viewport(), &leave);
    QVERIFY(sample.service()->isVisible());
}

void TestQGarageTreeView::aClickMakesTheCellCurrentFirst()
{
    Sample sample;
    QVERIFY(sample.show());
    QList<QModelIndex> services, attentions;
    connect(&sample.view, &QGarageTreeView::serviceButtonClicked, &sample.view, [&](QModelIndex index) {
        QCOMPARE(sample.view.currentIndex(), index);
        services.append(index);
    });
    connect(&sample.view, &QGarageTreeView::attentionButtonClicked, &sample.view, [&](QModelIndex index) {
        QCOMPARE(sample.view.currentIndex(), index);
        attentions.append(index);
    });
    sample.view.setCurrentIndex(sample.model.index(0, 0));

    sample.hover(2, Operation);
    QTest::mouseClick(sample.service(), Qt::LeftButton);
    QCOMPARE(services, QList<QModelIndex>({sample.model.index(2, Operation)}));
    QVERIFY(attentions.isEmpty());

    sample.hover(3, Number);
    QTest::mouseClick(sample.attention(), Qt::LeftButton);
    QCOMPARE(attentions, QList<QModelIndex>({sample.model.index(3, Number)}));
    QCOMPARE(services.size(), 1);
    QVERIFY(sample.view.selectionModel()->isSelected(sample.model.index(3, Number)));
}

void TestQGarageTreeView::afterScrollingTheClickMeansTheCellUnderTheButton_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("byPixel");
    QTest::addColumn<int>("rows");
    for (const int column : {int(Operation), int(Number)}) {
        const char *button = column == Operation ? "service" : "attention";
        for (const int rows : {1, 3, 50})
            QTest::addRow("%s, by %d rows", button, rows) << column << false << rows;
        QTest::addRow("%s, by pixels", button) << column << true << 2;
    }
}

void TestQGarageTreeView::afterScrollingTheClickMeansTheCellUnderTheButton()
{
    QFETCH(int, column);
    QFETCH(bool, byPixel);
    QFETCH(int, rows);
    Sample sample(200);
    sample.view.setVerticalScrollMode(byPixel ? QAbstractItemView::ScrollPerPixel
                                              : QAbstractItemView::ScrollPerItem);
    QVERIFY(sample.show());
    sample.hover(4, column);
    QPushButton *button = column == Operation ? sample.service() : sample.attention();
    const QRect before = button->geometry();
    sample.view.verticalScrollBar()->setValue(byPixel ? rows * before.height() : rows);
    QCoreApplication::processEvents();
    QCOMPARE(button->geometry(), before);
    QVERIFY(button->isVisible());

    QSignalSpy clicked(&sample.view,
                       column == Operation ? &QGarageTreeView::serviceButtonClicked
                                           : &QGarageTreeView::attentionButtonClicked);
    QTest::mouseClick(button, Qt::LeftButton);
    const QModelIndex under = sample.model.index(4 + rows, column);
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked.first().first().toModelIndex(), under);
    QCOMPARE(sample.view.currentIndex(), under);
}

void TestQGarageTreeView::scrollingSidewaysLeavesTheButton()
{
    Sample sample;
    sample.view.header()->setDefaultSectionSize(200);
    QVERIFY(sample.show());
    sample.hover(1, Number);
    const QRect before = sample.attention()->geometry();
    sample.view.horizontalScrollBar()->setValue(sample.view.horizontalScrollBar()->maximum());
    QVERIFY(sample.view.horizontalScrollBar()->value() > 0);
    QCOMPARE(sample.attention()->geometry(), before);

    QSignalSpy clicked(&sample.view, &QGarageTreeView::attentionButtonClicked);
    QTest::mouseClick(sample.attention(), Qt::LeftButton);
    QCOMPARE(clicked.first().first().toModelIndex(), sample.view.indexAt(before.center()));
    QVERIFY(sample.view.currentIndex().column() != Number);
}

void TestQGarageTreeView::aButtonWhoseCellIsGoneDoesNothing()
{
    Sample sample;
    QVERIFY(sample.show());
    sample.hover(3, Operation);
    sample.model.setRowCount(1);
    sample.view.setCurrentIndex(sample.model.index(0, 0));
    QSignalSpy service(&sample.view, &QGarageTreeView::serviceButtonClicked);
    QSignalSpy attention(&sample.view, &QGarageTreeView::attentionButtonClicked);
    QTest::mouseClick(sample.service(), Qt::LeftButton);
    QVERIFY(service.isEmpty());
    QVERIFY(attention.isEmpty());
    QCOMPARE(sample.view.currentIndex(), sample.model.index(0, 0));
}

void TestQGarageTreeView::movingWithAPressedButtonSelectsNothing()
{
    Sample sample;
    sample.view.setSelectionMode(QAbstractItemView::ExtendedSelection);
    QVERIFY(sample.show());
    const QPoint first = sample.view.visualRect(sample.model.index(0, Position)).center();
    const QPoint last = sample.view.visualRect(sample.model.index(3, Position)).center();
    QTest::mousePress(sample.view.viewport(), Qt::LeftButton, {}, first);
    QMouseEvent drag(QEvent::MouseMove, last, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(sample.view.viewport(), &drag);
    QTest::mouseRelease(sample.view.viewport(), Qt::LeftButton, {}, last);
    QCOMPARE(sample.view.selectionModel()->selectedRows().size(), 1);
    QVERIFY(sample.view.selectionModel()->isSelected(sample.model.index(0, Position)));
}

void TestQGarageTreeView::aCallThatNoButtonMadeIsIgnored()
{
    Sample sample;
    QVERIFY(sample.show());
    sample.hover(1, Operation);
    QSignalSpy service(&sample.view, &QGarageTreeView::serviceButtonClicked);
    QSignalSpy attention(&sample.view, &QGarageTreeView::attentionButtonClicked);
    const QModelIndex current = sample.view.currentIndex();
    sample.view.serviceButtonClick();
    QVERIFY(service.isEmpty());
    QVERIFY(attention.isEmpty());
    QCOMPARE(sample.view.currentIndex(), current);
}

void TestQGarageTreeView::aClickLeavesTheFocusInTheTable_data()
{
    QTest::addColumn<int>("column");
    QTest::newRow("service button") << int(Operation);
    QTest::newRow("attention button") << int(Number);
}

void TestQGarageTreeView::aClickLeavesTheFocusInTheTable()
{
    QFETCH(int, column);
    Sample sample;
    QVERIFY(sample.show());
    QVERIFY(QTest::qWaitForWindowActive(&sample.view));
    sample.hover(2, column);
    QTest::mouseClick(column == Operation ? sample.service() : sample.attention(), Qt::LeftButton);
    QVERIFY(sample.view.hasFocus());
    sample.hover(belowTheRows(sample)); // hides the button
    QVERIFY(sample.view.hasFocus());
}

void TestQGarageTreeView::theButtonsHaveAccessibleNames()
{
    const Sample sample;
    QCOMPARE(sample.service()->accessibleName(), "Записать работу");
    QCOMPARE(sample.attention()->accessibleName(), "Жалоба или задание");
}

void TestQGarageTreeView::theReceiverMayDestroyTheView()
{
    FlaggedModel model(2);
    auto *const view = new QGarageTreeView;
    const QPointer<QGarageTreeView> alive(view);
    view->setMouseTracking(true);
    view->setModel(&model);
    view->resize(600, 200);
    view->show();
    QVERIFY(QTest::qWaitForWindowExposed(view));
    connect(view, &QGarageTreeView::serviceButtonClicked, view, &QObject::deleteLater);
    QTest::mouseMove(view->viewport(), view->visualRect(model.index(0, Operation)).center());
    QTest::mouseClick(view->viewport()->findChild<QPushButton *>(), Qt::LeftButton);
    QTRY_VERIFY(!alive);
}

void TestQGarageTreeView::aViewWithoutAModelIsQuiet()
{
    QGarageTreeView view;
    view.setMouseTracking(true);
    view.resize(300, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QSignalSpy service(&view, &QGarageTreeView::serviceButtonClicked);
    QTest::mouseMove(view.viewport(), QPoint(20, 20));
    const auto buttons = view.viewport()->findChildren<QPushButton *>();
    QCOMPARE(buttons.size(), 2);
    for (QPushButton *button : buttons) {
        QVERIFY(!button->isVisible());
        button->click();
    }
    QVERIFY(service.isEmpty());
}

void TestQGarageTreeView::theArrowKeysSkipHiddenColumns()
{
    Sample sample;
    QVERIFY(sample.show());
    sample.view.setColumnHidden(Number, true);
    sample.view.setColumnHidden(Both, true);
    sample.view.setCurrentIndex(sample.model.index(1, Position));
    QTest::keyClick(&sample.view, Qt::Key_Right);
    QCOMPARE(sample.view.currentIndex(), sample.model.index(1, Operation));
    QTest::keyClick(&sample.view, Qt::Key_Right);
    QCOMPARE(sample.view.currentIndex(), sample.model.index(1, Operation));
    QTest::keyClick(&sample.view, Qt::Key_Left);
    QCOMPARE(sample.view.currentIndex(), sample.model.index(1, Position));
}

GARAGE_TEST(TestQGarageTreeView)
#include "tst_qgaragetreeview.moc"
