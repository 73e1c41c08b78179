#include "models/maintainancedelegate.h"
#include "models/maintainancefilterproxy.h"
#include "support/garagetest.h"
#include "support/maintainancesample.h"

#include <QHeaderView>
#include <QToolTip>
#include <QTreeView>

using namespace MaintainanceSample;

namespace {

constexpr int opId = 7;
constexpr int modelColumn = 1;
constexpr int numberColumn = 2;
constexpr int operationColumn = 3;
constexpr int recordId = 41;

ServiceLogItem logRecord(int id, int op, const QDateTime &time, const QString &person)
{
    ServiceLogItem record;
    record.id = id;
    record.opId = op;
    record.opTime = time;
    record.personName = person;
    record.state = DoneState;
    return record;
}

} // namespace

/// What the maintenance table answers to a resting pointer: why a cell is red, and what is left.
class TestMaintainanceToolTips : public GarageTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void anOperationCellSaysWhatIsLeftAndWhoDidIt();
    void anEmptyOperationCellNamesItsLimits();
    void aPersonIsNamedOnlyForTheShownWork();
    void aRedCarSaysWhatIsOpen();
    void otherCellsHaveNone();
    void aCutCellIsShownInFullBeforeTheExplanation();
    void manyOpenWorksStayWithinTwentyLines();

private:
    void show(OperationStat stat, const QList<OperationStat> &more = {});
    QString toolTip(int column) const;

    std::unique_ptr<MaintainanceModel> m_model;
    std::unique_ptr<MaintainanceFilterProxy> m_proxy;
    std::unique_ptr<ServiceLogModel> m_log;
    std::unique_ptr<QTreeView> m_view;
    std::unique_ptr<MaintainanceDelegate> m_delegate;
    Reglament m_reglament;
};

void TestMaintainanceToolTips::init()
{
    GarageTest::init();
    m_reglament = Reglament::ofOperations({opId, opId + 1});
    m_reglament.list[0].limits[opId] = {opId, "Oil", {7200, 0, 50}};
    m_model = std::make_unique<MaintainanceModel>();
    m_model->updateColumns(&m_reglament, nullptr);
    m_proxy = std::make_unique<MaintainanceFilterProxy>();
    m_proxy->setMaintainanceModel(m_model.get());
    m_log = std::make_unique<ServiceLogModel>();
    m_log->append({logRecord(recordId, opId, noonOf(3), "Иванов Иван")});
    m_delegate = std::make_unique<MaintainanceDelegate>();
    m_delegate->setReglament(&m_reglament);
    m_delegate->setServiceLog(m_log.get());
    m_view = std::make_unique<QTreeView>();
    m_view->setRootIsDecorated(false);
    m_view->setUniformRowHeights(true);
    m_view->setItemDelegate(m_delegate.get());
    m_view->setModel(m_proxy.get());
    m_view->header()->setStretchLastSection(false);
    for (int column = 0; column < m_model->columnCount(); ++column)
        m_view->setColumnWidth(column, 250);
    m_view->resize(1300, 200);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void TestMaintainanceToolTips::cleanup()
{
    QToolTip::hideText();
    m_view.reset();
    m_proxy.reset();
    m_model.reset();
    GarageTest::cleanup();
}

void TestMaintainanceToolTips::show(OperationStat stat, const QList<OperationStat> &more)
{
    stat.localId = recordId;
    m_model->setItems({car(1, "12", "Sodi", more + QList<OperationStat> {stat})});
}

QString TestMaintainanceToolTips::toolTip(int column) const
{
    QToolTip::hideText();
    if (!QTest::qWaitFor([] { return !QToolTip::isVisible(); }))
        return "The last tool tip stays";
    const QPoint at = m_view->visualRect(m_proxy->index(0, column)).center();
    QHelpEvent event(QEvent::ToolTip, at, m_view->viewport()->mapToGlobal(at));
    QApplication::sendEvent(m_view->viewport(), &event);
    const QString text = QToolTip::isVisible() ? QToolTip::text() : QString();
    const int start = int(text.indexOf('>') + 1);
    return text.mid(start, text.lastIndexOf('<') - start).replace(QChar(QChar::LineSeparator), '\n');
}

void TestMaintainanceToolTips::anOperationCellSaysWhatIsLeftAndWhoDidIt()
{
    show(done(opId, noonOf(3), 9000, 3, 20));
    QCOMPARE(toolTip(operationColumn),
             "Время: 2 ч 30 мин из 2 ч, превышено на 30 мин\nКруги: 20 из 50, осталось 30\n"
             "Последняя работа: 03.05.2024 12:00, Иванов Иван");
    m_delegate->setReglament(nullptr);
    QCOMPARE(toolTip(operationColumn), "Лимиты не заданы\nПоследняя работа: 03.05.2024 12:00, Иванов Иван");
}

void TestMaintainanceToolTips::anEmptyOperationCellNamesItsLimits()
{
    show(done(opId + 1, noonOf(3)));
    QCOMPARE(toolTip(operationColumn), "Время: лимит 2 ч\nКруги: лимит 50\nРабота не записана");
}

void TestMaintainanceToolTips::aPersonIsNamedOnlyForTheShownWork()
{
    show(done(opId, noonOf(3), 0, 0, 0));
    QVERIFY(toolTip(operationColumn).contains("Иванов"));
    m_model->itemById(1)->ops[opId].lastDone = noonOf(4);
    QVERIFY(toolTip(operationColumn).endsWith("Последняя работа: 04.05.2024 12:00"));

    show(done(opId, noonOf(3), 0, 0, 0));
    m_log.reset();
    QVERIFY(toolTip(operationColumn).endsWith("Последняя работа: 03.05.2024 12:00"));
}

void TestMaintainanceToolTips::aRedCarSaysWhatIsOpen()
{
    OperationStat complaint = open(complaintOperationId, noonOf(3));
    complaint.comment = "Стучит <b>слева</b>\nи справа";
    show(complaint);
    const QString text = "Жалоба, 03.05.2024 12:00, Иванов Иван\nСтучит &lt;b&gt;слева&lt;/b&gt;\nи справа";
    QCOMPARE(toolTip(modelColumn), text);
    QCOMPARE(toolTip(numberColumn), text);
    QCOMPARE(toolTip(0), QString());
}

void TestMaintainanceToolTips::otherCellsHaveNone()
{
    show(done(complaintOperationId, noonOf(3)));
    for (int column : {0, modelColumn, numberColumn})
        QCOMPARE(toolTip(column), QString());
}

void TestMaintainanceToolTips::aCutCellIsShownInFullBeforeTheExplanation()
{
    show(done(opId, noonOf(3), 9000, 3, 20));
    m_view->setColumnWidth(operationColumn, 60);
    const QString text = toolTip(operationColumn);
    QVERIFY2(text.startsWith("03.05.2024 12:00\n2.5 ч., 3 з., 20 кр.\nВремя: 2 ч 30 мин"), qPrintable(text));
}

void TestMaintainanceToolTips::manyOpenWorksStayWithinTwentyLines()
{
    QList<OperationStat> works;
    for (int op = 100; op < 150; ++op) {
        works.append(open(op, noonOf(2)));
        works.last().comment = QString("line\n").repeated(100);
    }
    show(open(opId, noonOf(3)), works);
    QVERIFY(toolTip(modelColumn).count('\n') < 20);
    QVERIFY(toolTip(modelColumn).endsWith(QChar(0x2026)));
}

GARAGE_TEST(TestMaintainanceToolTips)
#include "tst_maintainancetooltips.moc"
