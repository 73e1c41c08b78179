#include "models/emptytablehint.h"
#include "support/garagetest.h"

#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTreeView>

namespace {

const QString longText =
    "Здесь появятся машины, доступные для заездов: выделите их слева и нажмите стрелку вправо.";

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Base, QColor(35, 35, 35));
    palette.setColor(QPalette::Text, Qt::white);
    palette.setColor(QPalette::PlaceholderText, Qt::lightGray);
    return palette;
}

} // namespace

/// What an empty table says, in grabbed pixels.
class TestEmptyTableHint : public GarageTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void theTextIsInTheMiddle();
    void aTableWithARowShowsNone();
    void anEmptyTextPaintsNothing();
    void theTextIsRequestedAnew();
    void theColourIsThePlaceholders();
    void theTextIsReadableOnADarkBackground();
    void nothingIsCutOff_data();
    void nothingIsCutOff();
    void scrollingLeavesTheTextInPlace();
    void theTextIsNoPartOfTheModel();

private:
    QImage picture() const { return m_view->viewport()->grab().toImage(); }
    /// The pixels that differ from the background.
    QRect ink() const;
    int mostContrast() const;

    QStandardItemModel m_model;
    QString m_text;
    std::unique_ptr<QTreeView> m_view;
};

void TestEmptyTableHint::init()
{
    GarageTest::init();
    m_model.clear();
    m_model.setHorizontalHeaderLabels({"#", "Модель"});
    m_text = "Здесь появятся машины";
    m_view = std::make_unique<QTreeView>();
    m_view->setModel(&m_model);
    EmptyTableHint::install(m_view.get(), [this] { return m_text; });
    m_view->resize(500, 300);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void TestEmptyTableHint::cleanup()
{
    m_view.reset();
    GarageTest::cleanup();
}

QRect TestEmptyTableHint::ink() const
{
    const QImage image = picture();
    const QRgb background = m_view->palette().color(QPalette::Base).rgb();
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != background)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

int TestEmptyTableHint::mostContrast() const
{
    const QImage image = picture();
    const int background = qGray(m_view->palette().color(QPalette::Base).rgb());
    int most = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            most = std::max(most, std::abs(qGray(image.pixel(x, y)) - background));
    }
    return most;
}

void TestEmptyTableHint::theTextIsInTheMiddle()
{
    const QPoint distance = ink().center() - m_view->viewport()->rect().center();
    QVERIFY(ink().width() > m_view->fontMetrics().horizontalAdvance(m_text) * 9 / 10);
    QVERIFY2(std::abs(distance.x()) < 4, qPrintable(QString::number(distance.x())));
    QVERIFY2(std::abs(distance.y()) < 4, qPrintable(QString::number(distance.y())));
}

void TestEmptyTableHint::aTableWithARowShowsNone()
{
    m_model.appendRow(new QStandardItem);
    QVERIFY(ink().isEmpty());
    m_model.removeRow(0);
    QVERIFY(!ink().isEmpty());
}

void TestEmptyTableHint::anEmptyTextPaintsNothing()
{
    m_text.clear();
    QVERIFY(ink().isEmpty());
}

void TestEmptyTableHint::theTextIsRequestedAnew()
{
    const QImage former = picture();
    m_text = "Под фильтры не подходит ни одна машина.";
    QVERIFY(picture() != former);
    QCOMPARE(m_view->findChild<EmptyTableHint *>()->text(), m_text);
}

void TestEmptyTableHint::theColourIsThePlaceholders()
{
    QPalette palette;
    palette.setColor(QPalette::PlaceholderText, Qt::darkGreen);
    m_view->setPalette(palette);
    const QImage image = picture();
    bool isGreen = false;
    for (int y = 0; y < image.height() && !isGreen; ++y) {
        for (int x = 0; x < image.width() && !isGreen; ++x)
            isGreen = image.pixelColor(x, y) == QColor(Qt::darkGreen);
    }
    QVERIFY(isGreen);
}

void TestEmptyTableHint::theTextIsReadableOnADarkBackground()
{
    QVERIFY(mostContrast() > 80);
    m_view->setPalette(darkPalette());
    QVERIFY(mostContrast() > 80);
}

void TestEmptyTableHint::nothingIsCutOff_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("points");
    QTest::newRow("wide") << QSize(1900, 900) << 9;
    QTest::newRow("narrow") << QSize(160, 400) << 9;
    QTest::newRow("low") << QSize(450, 70) << 18;
    QTest::newRow("narrow, large font") << QSize(220, 300) << 18;
    QTest::newRow("much too small") << QSize(120, 90) << 18;
}

void TestEmptyTableHint::nothingIsCutOff()
{
    QFETCH(QSize, size);
    QFETCH(int, points);
    QFont font = m_view->font();
    font.setPointSize(points);
    m_view->setFont(font);
    m_view->resize(size);
    m_text = longText;
    QTRY_COMPARE(m_view->size(), size);
    const QRect painted = ink();
    QVERIFY(painted.width() > 30);
    const QRect viewport = m_view->viewport()->rect();
    // Text that is cut off reaches the margin of 8 pixels.
    QVERIFY2(viewport.adjusted(9, 9, -9, -9).contains(painted),
             qPrintable(QString("%1x%2+%3+%4 in %5x%6")
                            .arg(painted.width())
                            .arg(painted.height())
                            .arg(painted.x())
                            .arg(painted.y())
                            .arg(viewport.width())
                            .arg(viewport.height())));
}

void TestEmptyTableHint::scrollingLeavesTheTextInPlace()
{
    m_view->setColumnWidth(0, 2000);
    QTRY_VERIFY(m_view->horizontalScrollBar()->isVisible());
    QTRY_VERIFY(m_view->horizontalScrollBar()->maximum() > 500);
    const QImage before = m_view->grab().toImage();
    const QRect place = ink();
    QWidget *viewport = m_view->viewport();
    viewport->repaint();
    int updates = 0;
    class Counter final : public QObject
    {
    public:
        explicit Counter(int &count) : m_count(count) { }
        bool eventFilter(QObject *watched, QEvent *event) override
        {
            if (event->type() == QEvent::Paint
                && static_cast<QPaintEvent *>(event)->region().boundingRect()
                    == static_cast<QWidget *>(watched)->rect())
                ++m_count;
            return false;
        }

    private:
        int &m_count;
    };
    Counter counter(updates);
    QCoreApplication::processEvents();
    viewport->installEventFilter(&counter);
    m_view->horizontalScrollBar()->setValue(200);
    QTRY_VERIFY(updates > 0);
    QCOMPARE(ink(), place);
}

void TestEmptyTableHint::theTextIsNoPartOfTheModel()
{
    QCOMPARE(m_model.rowCount(), 0);
    QVERIFY(!m_view->indexAt(m_view->viewport()->rect().center()).isValid());
    QVERIFY(m_view->viewport()->findChildren<QWidget *>().isEmpty());
}

GARAGE_TEST(TestEmptyTableHint)
#include "tst_emptytablehint.moc"
