#include "models/qeditabletreeview.h"
#include "support/garagetest.h"

#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QJsonArray>
#include <QJsonObject>
#include <QMimeData>
#include <QStandardItemModel>
#include <QTimer>
#include <QWindow>

/// Items that the mouse drags out of an editable list onto another widget. The offscreen platform cancels
/// every drag at once; the minimal one performs it.
class TestListDrag : public GarageTest
{
    Q_OBJECT
private slots:
    void onlyItemsThatTheTargetTookAreReported_data();
    void onlyItemsThatTheTargetTookAreReported();
};

namespace {

const QString jsonType = "application/json";
const QString textType = "text/plain";

enum class Ending { Drop, Escape };

class CarList final : public QStandardItemModel
{
public:
    CarList()
    {
        for (const char *name : {"K7", "K8"})
            appendRow(new QStandardItem(name));
    }

    QMimeData *mimeData(const QModelIndexList &) const override
    {
        auto *const data = new QMimeData;
        data->setData(mimeType, R"({"srcList": [{"name": "K7", "color": "#ff0000", "id": 7}]})");
        handedOut.append(data);
        if (onRequest)
            onRequest();
        return data;
    }
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction | Qt::MoveAction; }

    QString mimeType;
    std::function<void()> onRequest;
    mutable QList<QPointer<QMimeData>> handedOut;
};

/// Accepts drops with the given action, or refuses them.
class DropTarget final : public QWidget
{
public:
    DropTarget() { setAcceptDrops(true); }

    Qt::DropAction answer = Qt::MoveAction;
    int drops = 0;

protected:
    void dragEnterEvent(QDragEnterEvent *event) override { reply(*event); }
    void dragMoveEvent(QDragMoveEvent *event) override { reply(*event); }
    void dropEvent(QDropEvent *event) override
    {
        ++drops;
        reply(*event);
    }

private:
    void reply(QDropEvent &event) const
    {
        event.setDropAction(answer);
        event.setAccepted(answer != Qt::IgnoreAction);
    }
};

} // namespace

Q_DECLARE_METATYPE(Ending)

void TestListDrag::onlyItemsThatTheTargetTookAreReported_data()
{
    QTest::addColumn<QString>("mimeType");
    QTest::addColumn<Qt::DropAction>("answer");
    QTest::addColumn<Ending>("ending");
    QTest::addColumn<bool>("isDropped");
    QTest::addColumn<bool>("isReported");
    QTest::newRow("moved") << jsonType << Qt::MoveAction << Ending::Drop << true << true;
    QTest::newRow("refused") << jsonType << Qt::IgnoreAction << Ending::Drop << false << false;
    QTest::newRow("cancelled") << jsonType << Qt::MoveAction << Ending::Escape << false << false;
    QTest::newRow("no JSON, copied") << textType << Qt::CopyAction << Ending::Drop << true << false;
    QTest::newRow("no JSON, cancelled") << textType << Qt::MoveAction << Ending::Escape << false << false;
}

void TestListDrag::onlyItemsThatTheTargetTookAreReported()
{
    QFETCH(const QString, mimeType);
    QFETCH(const Qt::DropAction, answer);
    QFETCH(const Ending, ending);
    QFETCH(const bool, isDropped);
    QFETCH(const bool, isReported);
    CarList model;
    model.mimeType = mimeType;
    QWidget window;
    auto *const view = new QEditableTreeView;
    auto *const target = new DropTarget;
    target->answer = answer;
    auto *const layout = new QHBoxLayout(&window);
    layout->addWidget(view);
    layout->addWidget(target, 1);
    view->setModel(&model);
    view->setDragEnabled(true);
    window.resize(600, 200);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QList<QJsonArray> reported;
    QList<const QObject *> takers;
    connect(view, &QEditableTreeView::itemsDroppedOut, this,
            [&](const QJsonArray &items, const QObject *taker) {
                reported.append(items);
                takers.append(taker);
            });

    const QPoint from = view->viewport()->mapTo(&window, view->visualRect(model.index(0, 0)).center());
    const QPoint to = target->geometry().center();
    QWindow *const handle = window.windowHandle();
    // The drag runs an event loop of its own, in which user input continues.
    QTimer user;
    user.setSingleShot(true);
    connect(&user, &QTimer::timeout, this, [=] {
        QTest::mouseMove(handle, to);
        QTest::mouseMove(handle, to + QPoint(1, 1));
        if (ending == Ending::Escape)
            QTest::keyClick(handle, Qt::Key_Escape);
        QTest::mouseRelease(handle, Qt::LeftButton, {}, to);
    });
    model.onRequest = [&user] { user.start(0); };
    QTest::mousePress(handle, Qt::LeftButton, {}, from);
    const QPoint farEnough = from + QPoint(QApplication::startDragDistance() + 5, 0);
    QTest::mouseMove(handle, farEnough);
    QTest::mouseMove(handle, farEnough + QPoint(4, 0));

    QVERIFY(!model.handedOut.isEmpty());
    QCOMPARE(target->drops, isDropped ? 1 : 0);
    const QJsonObject car {{"name", "K7"}, {"color", "#ff0000"}, {"id", 7}};
    QCOMPARE(reported, isReported ? QList<QJsonArray> {QJsonArray {car}} : QList<QJsonArray>());
    QCOMPARE(takers, isReported ? QList<const QObject *> {target} : QList<const QObject *>());
    QCOMPARE(model.rowCount(), 2);
    for (const QPointer<QMimeData> &data : qAsConst(model.handedOut))
        QTRY_VERIFY(!data);
}

GARAGE_TEST(TestListDrag)
#include "tst_listdrag.moc"
