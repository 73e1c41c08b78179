#include "support/garagetest.h"
#include "support/garagewindow.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QStyleOptionComboBox>
#include <QToolTip>
#include <QTreeView>

namespace {

/// Pixels that a combo box has for its chosen text.
int fieldWidth(const QComboBox &combo)
{
    QStyleOptionComboBox option;
    option.initFrom(&combo);
    return combo.style()
        ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &combo)
        .width();
}

/// The column titles, as pixels darker than the header.
QImage titleOf(QTreeView &view, int section)
{
    QHeaderView *header = view.header();
    return header->viewport()
        ->grab({header->sectionViewportPosition(section), 0, header->sectionSize(section), header->height()})
        .toImage();
}

bool hasInk(const QImage &image, int left, int width)
{
    for (int x = left; x < left + width; ++x) {
        for (int y = 3; y < image.height() - 3; ++y) {
            if (qGray(image.pixel(x, y)) < 110)
                return true;
        }
    }
    return false;
}

} // namespace

/// That nothing people need is cut off in the window, at any font.
class TestWindowWidths : public GarageTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void fixedEntriesAreShownWhole_data();
    void fixedEntriesAreShownWhole();
    void theNumberFieldHoldsSixDigits_data() { fixedEntriesAreShownWhole_data(); }
    void theNumberFieldHoldsSixDigits();
    void aLongEntryGetsTheFreeWidth();
    void theWindowFitsIntoNineHundredPixels();
    void theLogScrollsByPixels();
    void aTitleALittleTooWideIsCondensed();
    void aTitleMuchTooWideIsElidedAndHasAToolTip();

private:
    void setFont(int points);

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<GarageWindow> m_window;
    QFont m_font;
};

void TestWindowWidths::init()
{
    GarageTest::init();
    m_database = createDatabase();
    m_database->addCar(1, "12", "Sodi RT8 Evolution Extended");
    m_database->addOperation(3, "Замена масла в двигателе, проверка и регулировка зазоров");
    m_database->addOperation(4, "Замена цепи приво");
    m_database->addLimit("Sodi RT8 Evolution Extended", 3, 3600, 10, 10);
    m_database->addRecord(1, 3, "2024-05-01T10:00:00", 1);
    m_font = QApplication::font();
    setFont(12);
}

void TestWindowWidths::cleanup()
{
    QApplication::setFont(m_font);
    m_window.reset();
    m_database.reset();
    GarageTest::cleanup();
}

void TestWindowWidths::setFont(int points)
{
    m_window.reset();
    QFont font = m_font;
    font.setPointSize(points);
    QApplication::setFont(font);
    m_window = std::make_unique<GarageWindow>();
}

void TestWindowWidths::fixedEntriesAreShownWhole_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<QSize>("size");
    QTest::newRow("9 points, 900 x 600") << 9 << QSize(900, 600);
    QTest::newRow("9 points, 1100 x 700") << 9 << QSize(1100, 700);
    QTest::newRow("14 points, as small as possible") << 14 << QSize(1, 1);
    QTest::newRow("18 points, as small as possible") << 18 << QSize(1, 1);
}

void TestWindowWidths::fixedEntriesAreShownWhole()
{
    QFETCH(int, points);
    QFETCH(QSize, size);
    setFont(points);
    m_window->form->resize(size);
    m_window->show();
    for (const auto &[page, name, entries] :
         {std::tuple("tabCars", "cbSortKind", 4), std::tuple("tabCars", "cbFilterServiceState", 2),
          std::tuple("tabServiceLog", "cbLogFilterOperation", 2)}) {
        m_window->openTab(page);
        const auto *combo = m_window->find<QComboBox>(name);
        for (int entry = 0; entry < entries; ++entry) {
            const int needed = combo->fontMetrics().horizontalAdvance(combo->itemText(entry));
            QVERIFY2(fieldWidth(*combo) >= needed,
                     qPrintable(combo->itemText(entry)
                                + QString(": %1 < %2").arg(fieldWidth(*combo)).arg(needed)));
        }
    }
}

void TestWindowWidths::theNumberFieldHoldsSixDigits()
{
    QFETCH(int, points);
    QFETCH(QSize, size);
    setFont(points);
    m_window->form->resize(size);
    m_window->show();
    m_window->openTab("tabServiceLog");
    auto *field = m_window->find<QLineEdit>("leLogFilterNum");
    field->setText("888888");
    QVERIFY(field->width() >= field->fontMetrics().horizontalAdvance("888888") + 8);
}

void TestWindowWidths::aLongEntryGetsTheFreeWidth()
{
    m_window->form->resize(1920, 1080);
    m_window->show();
    for (const auto &[page, name] :
         {std::pair("tabCars", "cbFilterModels"), std::pair("tabServiceLog", "cbLogFilterModels"),
          std::pair("tabServiceLog", "cbLogFilterOperation")}) {
        m_window->openTab(page);
        const auto *combo = m_window->find<QComboBox>(name);
        for (int entry = 0; entry < combo->count(); ++entry) {
            const int needed = combo->fontMetrics().horizontalAdvance(combo->itemText(entry));
            QTRY_VERIFY2(fieldWidth(*combo) >= needed * 0.98,
                         qPrintable(combo->itemText(entry)
                                    + QString(": %1 < %2").arg(fieldWidth(*combo)).arg(needed)));
        }
    }
}

void TestWindowWidths::theWindowFitsIntoNineHundredPixels()
{
    setFont(9);
    m_window->show();
    const int least = m_window->form->minimumSizeHint().width();
    QVERIFY2(least <= 900, qPrintable(QString::number(least)));
}

void TestWindowWidths::theLogScrollsByPixels()
{
    QCOMPARE(m_window->find<QTreeView>("tvServiceLog")->verticalScrollMode(),
             QAbstractItemView::ScrollPerPixel);
}

void TestWindowWidths::aTitleALittleTooWideIsCondensed()
{
    m_window->show();
    auto *view = m_window->find<QTreeView>("tvMaintainanceTable");
    QHeaderView *header = view->header();
    const int section = 3;
    const QString title = header->model()->headerData(section, Qt::Horizontal).toString();
    const int margins = 2 * header->style()->pixelMetric(QStyle::PM_HeaderMargin);
    const int whole = header->fontMetrics().horizontalAdvance(title) + margins;
    view->setColumnWidth(section, whole * 100 / 109);
    const QImage condensed = titleOf(*view, section);
    QVERIFY(hasInk(condensed, condensed.width() - 14, 11));
    QVERIFY(!hasInk(condensed, 0, 1));

    const QPoint at(header->sectionViewportPosition(section) + 5, 5);
    QHelpEvent event(QEvent::ToolTip, at, header->viewport()->mapToGlobal(at));
    QApplication::sendEvent(header->viewport(), &event);
    QVERIFY(!QToolTip::isVisible());
}

void TestWindowWidths::aTitleMuchTooWideIsElidedAndHasAToolTip()
{
    m_window->show();
    auto *view = m_window->find<QTreeView>("tvMaintainanceTable");
    QHeaderView *header = view->header();
    const int section = 3;
    QCOMPARE(view->columnWidth(section), 160);
    const QImage elided = titleOf(*view, section);
    view->setColumnWidth(section, 1000);
    const QImage whole = titleOf(*view, section);
    view->setColumnWidth(section, 160);
    // It begins with the title's first letter, as nothing is lost on the left.
    QVERIFY(!hasInk(elided, 0, 2));
    QVERIFY(hasInk(elided, 2, 14));
    QVERIFY(hasInk(whole, 300, 400));

    const QPoint at(header->sectionViewportPosition(section) + 5, 5);
    QHelpEvent event(QEvent::ToolTip, at, header->viewport()->mapToGlobal(at));
    QApplication::sendEvent(header->viewport(), &event);
    QVERIFY(QToolTip::isVisible());
    QVERIFY(QToolTip::text().contains("проверка и регулировка зазоров"));
    QToolTip::hideText();
    QVERIFY(!header->model()->headerData(section, Qt::Horizontal, Qt::ToolTipRole).isValid());
}

GARAGE_TEST(TestWindowWidths)
#include "tst_windowwidths.moc"
