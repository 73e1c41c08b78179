#include "settingspagetest.h"

#include <QHeaderView>
#include <QProxyStyle>
#include <QToolTip>

#include <algorithm>

namespace {

bool isInk(QRgb pixel)
{
    return qGray(pixel) < 140;
}

/// The groups of neighbouring pixel rows with ink: the lines of a text whose lines do not touch.
QVector<QImage> linesOf(const QImage &cell)
{
    const auto hasInk = [&cell](int y) {
        for (int x = 2; x < cell.width() - 2; ++x) {
            if (isInk(cell.pixel(x, y)))
                return true;
        }
        return false;
    };
    QVector<QImage> lines;
    int top = -1;
    for (int y = 2; y < cell.height() - 1; ++y) {
        const bool isLine = y < cell.height() - 2 && hasInk(y);
        if (isLine && top < 0)
            top = y;
        if (!isLine && top >= 0) {
            lines.append(cell.copy(0, top, cell.width(), y - top));
            top = -1;
        }
    }
    return lines;
}

/// Counts the texts that a table measures.
class MeasureCounter : public QProxyStyle
{
public:
    QRect subElementRect(SubElement element, const QStyleOption *option, const QWidget *widget) const override
    {
        m_count += element == SE_ItemViewItemText ? 1 : 0;
        return QProxyStyle::subElementRect(element, option, widget);
    }
    int count() const { return m_count; }

private:
    mutable int m_count = 0;
};

} // namespace

/// That all figures of the schedule can be read at its fixed column width.
class TestScheduleCells : public SettingsPageTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void allFiguresAreShown_data();
    void allFiguresAreShown();
    void theTextIsUnchanged();
    void aWiderColumnNeedsFewerLines();
    void editedLimitsGetTheirLines();
    void aRowOutOfSightCounts();
    void aHiddenPageMeasuresNoCell();

private:
    QImage picture(int row, int column) const;
    QString toolTip(int row, int column) const;

    QFont m_font;
};

void TestScheduleCells::init()
{
    m_font = QApplication::font();
    QFont font = m_font;
    font.setPointSize(10); // of the usual desktops
    QApplication::setFont(font);
    SettingsPageTest::init();
}

void TestScheduleCells::cleanup()
{
    SettingsPageTest::cleanup();
    QApplication::setFont(m_font);
}

QImage TestScheduleCells::picture(int row, int column) const
{
    QCoreApplication::processEvents();
    QTreeView *view = scheduleView();
    return view->viewport()->grab(view->visualRect(schedule()->index(row, column))).toImage();
}

QString TestScheduleCells::toolTip(int row, int column) const
{
    QToolTip::hideText();
    QCoreApplication::processEvents();
    QWidget *viewport = scheduleView()->viewport();
    const QPoint at = scheduleView()->visualRect(schedule()->index(row, column)).center();
    QHelpEvent event(QEvent::ToolTip, at, viewport->mapToGlobal(at));
    QApplication::sendEvent(viewport, &event);
    return QToolTip::text();
}

void TestScheduleCells::allFiguresAreShown_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("runs");
    QTest::addColumn<int>("laps");
    QTest::addColumn<int>("lines");
    QTest::newRow("small") << 5400 << 10 << 0 << 2;
    QTest::newRow("usual") << 36000 << 120 << 1500 << 2;
    QTest::newRow("large") << 3600000 << 1000 << 10000 << 3;
}

void TestScheduleCells::allFiguresAreShown()
{
    QFETCH(int, seconds);
    QFETCH(int, runs);
    QFETCH(int, laps);
    database->exec("UPDATE service_reglament SET time_limit=?, runs_limit=?, laps_limit=?",
                   {seconds, runs, laps});
    open();
    QCOMPARE(scheduleView()->columnWidth(2), 120);
    QTEST(int(linesOf(picture(0, 2)).size()), "lines");
    QCOMPARE(toolTip(0, 2), QString()); // it is shown for a text that is cut off
}

void TestScheduleCells::theTextIsUnchanged()
{
    open();
    QCOMPARE(scheduleCell(0, 2), "1.5 ч. 10 заезд. 0 кр.");
}

void TestScheduleCells::aWiderColumnNeedsFewerLines()
{
    open();
    const int two = picture(0, 2).height();
    scheduleView()->setColumnWidth(2, 200);
    QTRY_VERIFY(picture(0, 2).height() < two);
    QCOMPARE(linesOf(picture(0, 2)).size(), 1);
    scheduleView()->setColumnWidth(2, 80);
    QTRY_VERIFY(picture(0, 2).height() > two);
    QCOMPARE(linesOf(picture(0, 2)).size(), 3);
}

void TestScheduleCells::editedLimitsGetTheirLines()
{
    open();
    const int two = picture(1, 3).height();
    onNextDialog([](QDialog &dialog) {
        enterText(child<QLineEdit>(dialog, "leTime"), "1000");
        enterText(child<QLineEdit>(dialog, "leRunsCount"), "1000");
        enterText(child<QLineEdit>(dialog, "leLapsCount"), "10000");
        press(dialog, QDialogButtonBox::Ok);
    });
    doubleClick(scheduleView(), schedule()->index(1, 3));
    scheduleView()->setCurrentIndex({});
    QTRY_VERIFY(picture(1, 3).height() > two);
    QCOMPARE(linesOf(picture(1, 3)).size(), 3);
}

void TestScheduleCells::aRowOutOfSightCounts()
{
    for (int car = 10; car < 40; ++car)
        database->addCar(car, "1", QString("Модель %1").arg(car));
    database->addLimit("Модель 39", 5, 3600000, 1000, 10000);
    open();
    const int last = schedule()->rowCount() - 1;
    scheduleView()->scrollToBottom();
    QCOMPARE(scheduleCell(last, 1), "Модель 39");
    QCOMPARE(linesOf(picture(last, 3)).size(), 3);
    QCOMPARE(toolTip(last, 3), QString());
}

void TestScheduleCells::aHiddenPageMeasuresNoCell()
{
    open();
    m_form->hide();
    MeasureCounter counter;
    scheduleView()->setStyle(&counter);
    scheduleView()->setColumnWidth(2, 80);
    scheduleView()->doItemsLayout();
    QCoreApplication::processEvents();
    QCOMPARE(counter.count(), 0);

    m_form->show();
    QVERIFY(counter.count() > 0);
    QCOMPARE(linesOf(picture(0, 2)).size(), 3);
    scheduleView()->setStyle(nullptr);
}

GARAGE_TEST(TestScheduleCells)
#include "tst_schedulecells.moc"
