#include "editablelist.h"
#include "support/garagetest.h"

#include <QApplication>
#include <QMouseEvent>

/// Drags that the list view starts: what they carry and what it reports at their end.
class TestDraggedItems : public GarageTest
{
    Q_OBJECT
private slots:
    void onlyAMoveReportsTheDroppedItems_data();
    void onlyAMoveReportsTheDroppedItems();
    void theDragCarriesThePayloadAndItsPicture();
    void theMouseStartsTheDrag();
    void nothingIsDraggedWithoutASelection();
    void otherDragsAreTheBases_data();
    void otherDragsAreTheBases();
    void aRealDragThatIsRefusedEmitsNothing();
    void aViewDestroyedDuringADragEmitsNothing();
};

namespace {

QMimeData *mimeDataOf(const QByteArray &content, const QString &type = "application/json")
{
    auto *data = new QMimeData;
    data->setData(type, content);
    return data;
}

const QByteArray payload = R"({"from":"list","srcList":[{"name":"K7","color":"#ff0000","id":7}]})";
const QString droppedOut = R"(dropped [{"color":"#ff0000","id":7,"name":"K7"}])";

} // namespace

void TestDraggedItems::onlyAMoveReportsTheDroppedItems_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<int>("result");
    QTest::addColumn<QStringList>("log");
    QTest::newRow("moved") << payload << int(Qt::MoveAction) << QStringList(droppedOut);
    QTest::newRow("copied") << payload << int(Qt::CopyAction) << QStringList();
    QTest::newRow("linked") << payload << int(Qt::LinkAction) << QStringList();
    QTest::newRow("cancelled") << payload << int(Qt::IgnoreAction) << QStringList();
    QTest::newRow("target's move") << payload << int(Qt::TargetMoveAction) << QStringList();
    QTest::newRow("no list") << QByteArray("{}") << int(Qt::MoveAction) << QStringList("dropped []");
    QTest::newRow("a list that is none")
        << QByteArray(R"({"srcList":7})") << int(Qt::MoveAction) << QStringList("dropped []");
    QTest::newRow("items that are none") << QByteArray(R"({"srcList":[1,null,"x",[]]})")
                                         << int(Qt::MoveAction) << QStringList(R"(dropped [1,null,"x",[]])");
}

void TestDraggedItems::onlyAMoveReportsTheDroppedItems()
{
    QFETCH(QByteArray, json);
    QFETCH(int, result);
    List list;
    list.model.makeMimeData = [json] { return mimeDataOf(json); };
    list.view.onDrag = [result](QDrag &) { return Qt::DropAction(result); };
    list.view.selectAll();
    list.startDrag();
    QTEST(list.log, "log");
    QCOMPARE(list.model.rowCount(), 3);
    QCOMPARE(list.model.mimeDataCalls, 1);
    QVERIFY(!list.dropTarget);
}

void TestDraggedItems::theDragCarriesThePayloadAndItsPicture()
{
    List list;
    list.model.makeMimeData = [] { return mimeDataOf(payload); };
    int drags = 0;
    list.view.onDrag = [&](QDrag &drag) {
        ++drags;
        [&] {
            QCOMPARE(drag.parent(), &list.view);
            QCOMPARE(drag.source(), &list.view);
            QCOMPARE(drag.hotSpot(), QPoint(0, 0));
            QCOMPARE(drag.mimeData(), list.model.firstMade.data());
            QCOMPARE(drag.mimeData()->data("application/json"), payload);
            const QJsonArray items = QJsonDocument::fromJson(payload)["srcList"].toArray();
            QCOMPARE(drag.pixmap().toImage(), QEditableTreeView::dragPixmap(items).toImage());
        }();
        return Qt::IgnoreAction;
    };
    list.view.setCurrentIndex(list.model.index(1, 0));
    list.startDrag(Qt::MoveAction);
    QCOMPARE(drags, 1);
}

void TestDraggedItems::theMouseStartsTheDrag()
{
    List list;
    list.model.makeMimeData = [] { return mimeDataOf(payload); };
    list.view.onDrag = [](QDrag &) { return Qt::MoveAction; };
    QVERIFY(QTest::qWaitForWindowExposed(&list.view));
    QWidget *viewport = list.view.viewport();
    const QPoint from = list.view.visualRect(list.model.index(1, 0)).center();
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    for (int step = 1; step <= 2; ++step) {
        const QPoint to = from + QPoint(0, step * QApplication::startDragDistance());
        QMouseEvent move(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(viewport, &move);
    }
    QTest::mouseRelease(viewport, Qt::LeftButton);
    QCOMPARE(list.log, QStringList(droppedOut));
    QCOMPARE(list.view.pressedIndex(), list.model.index(1, 0));
}

void TestDraggedItems::nothingIsDraggedWithoutASelection()
{
    List list;
    list.view.clearSelection();
    list.startDrag();
    QCOMPARE(list.model.mimeDataCalls, 0);

    ListView withoutModel;
    withoutModel.startDrag(Qt::MoveAction);
    QVERIFY(withoutModel.findChildren<QDrag *>().isEmpty());
}

void TestDraggedItems::otherDragsAreTheBases_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("supported");
    QTest::addColumn<int>("mimeDataCalls");
    const QString json = "application/json";
    const int both = Qt::MoveAction | Qt::CopyAction;
    // The base requests mime data as well; the two calls are the view's and the base's.
    QTest::newRow("no mime data") << QString() << QByteArray() << both << 2;
    QTest::newRow("another type") << "text/plain" << payload << both << 2;
    QTest::newRow("empty") << json << QByteArray() << both << 2;
    QTest::newRow("damaged JSON") << json << QByteArray(R"({"srcList":[)") << both << 2;
    QTest::newRow("an array") << json << QByteArray("[]") << both << 2;
    QTest::newRow("a number") << json << QByteArray("7") << both << 2;
    QTest::newRow("nested too deep") << json << QByteArray(5000, '[') << both << 2;
    QTest::newRow("only copies") << json << payload << int(Qt::CopyAction) << 1;
    QTest::newRow("no action at all") << json << payload << int(Qt::IgnoreAction) << 1;
}

void TestDraggedItems::otherDragsAreTheBases()
{
    QFETCH(QString, type);
    QFETCH(QByteArray, content);
    QFETCH(int, supported);
    QFETCH(int, mimeDataCalls);
    List list;
    list.model.makeMimeData = [&]() -> QMimeData * {
        // The base's own drag ends for lack of data.
        const bool isTheBases = list.model.mimeDataCalls == mimeDataCalls;
        return isTheBases || type.isEmpty() ? nullptr : mimeDataOf(content, type);
    };
    list.view.onDrag = [&list](QDrag &) {
        list.log.append("dragged");
        return Qt::MoveAction;
    };
    list.view.selectAll();
    list.startDrag(Qt::DropActions(supported));
    QCOMPARE(list.model.mimeDataCalls, mimeDataCalls);
    QCOMPARE(list.log, QStringList());
    QVERIFY(list.model.firstMade.isNull());
    QVERIFY(list.view.findChildren<QDrag *>().isEmpty());
}

void TestDraggedItems::aRealDragThatIsRefusedEmitsNothing()
{
    for (const QByteArray &json : {payload, QByteArray()}) {
        List list;
        list.model.makeMimeData = [json] { return mimeDataOf(json); };
        list.view.selectAll();
        // Cancels the platform's drag, if it waits at all.
        QTimer::singleShot(0, &list.view, [&list] {
            QTest::keyClick(&list.view, Qt::Key_Escape);
            QTest::mouseRelease(list.view.viewport(), Qt::LeftButton);
        });
        list.startDrag();
        QVERIFY(list.model.mimeDataCalls > 0);
        QCOMPARE(list.log, QStringList());
        QCOMPARE(list.model.rowCount(), 3);
        QTRY_VERIFY(list.view.findChildren<QDrag *>().isEmpty());
        QVERIFY(list.model.firstMade.isNull());
    }
}

void TestDraggedItems::aViewDestroyedDuringADragEmitsNothing()
{
    QStringList log;
    ListModel model(&log);
    model.makeMimeData = [] { return mimeDataOf(payload); };
    auto *view = new ListView;
    view->setModel(&model);
    view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view->selectAll();
    connect(view, &QEditableTreeView::itemsDroppedOut, this, [&log] { log.append("dropped"); });
    const QPointer<QObject> watched = view;
    const std::function<Qt::DropAction(QDrag &)> dieInDrag = [view](QDrag &) {
        delete view;
        return Qt::MoveAction;
    };
    view->onDrag = std::cref(dieInDrag);
    view->startDrag(Qt::MoveAction);
    QVERIFY(!watched);
    QCOMPARE(log, QStringList());
}

GARAGE_TEST(TestDraggedItems)
#include "tst_draggeditems.moc"
