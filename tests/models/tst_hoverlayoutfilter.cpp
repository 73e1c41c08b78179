#include "models/hoverlayoutfilter.h"
#include "support/garagetest.h"

#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTreeView>

namespace {

constexpr int columns = 2;

/// Notes that it was asked for the neighbour of an index that it does not have. Qt's proxy would crash.
class CheckingProxy final : public QSortFilterProxyModel
{
public:
    QModelIndex sibling(int row, int column, const QModelIndex &index) const override
    {
        if (hasIndex(index.row(), index.column()))
            return QSortFilterProxyModel::sibling(row, column, index);
        m_wasAskedForLostIndex = true;
        return {};
    }
    bool wasAskedForLostIndex() const { return m_wasAskedForLostIndex; }

private:
    mutable bool m_wasAskedForLostIndex = false;
};

/// Puts the pointer on a cell of the last column, where the scroll bar will be, so that the cell is hovered.
void hoverCellUnderScrollBar(const QTreeView &view)
{
    constexpr int marginInBar = 4;
    const QPoint place(view.viewport()->width() - marginInBar,
                       view.visualRect(view.model()->index(0, columns - 1)).center().y());
    QCursor::setPos(view.viewport()->mapToGlobal(place));
    QTest::mouseMove(view.windowHandle(), view.viewport()->mapTo(&view, place));
    QHoverEvent hover(QEvent::HoverMove, place, place);
    QCoreApplication::sendEvent(view.viewport(), &hover);
}

} // namespace

/// The pointer leaves a view whose layout is pending.
class TestHoverLayoutFilter : public GarageTest
{
    Q_OBJECT
private slots:
    void theHoveredIndexSurvivesALayoutThatShowsTheScrollBar();
};

void TestHoverLayoutFilter::theHoveredIndexSurvivesALayoutThatShowsTheScrollBar()
{
    QStandardItemModel source(3, columns);
    CheckingProxy proxy;
    proxy.setSourceModel(&source);
    QTreeView view;
    HoverLayoutFilter::install(&view);
    view.viewport()->setAttribute(Qt::WA_Hover); // as style sheets do
    view.setModel(&proxy);
    view.resize(200, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    hoverCellUnderScrollBar(view);

    // The first layout sets the range of the scroll bar, the second one shows it.
    constexpr int moreThanVisible = 100;
    source.insertRows(source.rowCount(), moreThanVisible);
    view.doItemsLayout();
    source.insertRows(source.rowCount(), moreThanVisible);
    QVERIFY(!view.verticalScrollBar()->isVisible());

    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(view.viewport(), &leave);
    QVERIFY(view.verticalScrollBar()->isVisible());
    QVERIFY(!proxy.wasAskedForLostIndex());
}

GARAGE_TEST(TestHoverLayoutFilter)
#include "tst_hoverlayoutfilter.moc"
