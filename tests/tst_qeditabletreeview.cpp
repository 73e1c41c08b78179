#include "models/qeditabletreeview.h"
#include "support/garagetest.h"

#include <QAbstractItemModelTester>
#include <QDrag>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>
#include <QSignalSpy>
#include <QStandardItemModel>

/// The keys and the drag source of the list of service operations.
class TestQEditableTreeView : public GarageTest
{
    Q_OBJECT
private slots:
    void theSignalsAndTheSlotComeInOrder();
    void eachKeyDoesItsOwnThing_data();
    void eachKeyDoesItsOwnThing();
    void theNoticeOfEditingComesBeforeTheEditor();
    void theDeleteKeyWhileEditingStaysInTheEditor();
    void withoutAModelEveryKeyIsQuiet();
    void aPressRecordsTheCellAndTheModifiers();
    void aDropRecordsWhereItHappened();
    void everySelectionChangeIsPassedOn();
    void onlyAMoveTakesItemsOut_data();
    void onlyAMoveTakesItemsOut();
    void theDragCarriesPayloadAndPicture();
    void otherModelsAreDraggedAsUsual_data();
    void otherModelsAreDraggedAsUsual();
    void nothingSelectedDragsNothing();
    void withoutTheMoveActionNoPayloadIsAskedFor();
    void theViewMayDieDuringTheDrag();
    void thePictureShowsOneCardOrAStack_data();
    void thePictureShowsOneCardOrAStack();
    void theLabelStandsInTheMiddle_data();
    void theLabelStandsInTheMiddle();
};

namespace {

const QString editStarted = QStringLiteral("editStarted");

/// A list of names that notes the notices and hands out whatever mime data a test wants.
class NameModel final : public QStandardItemModel
{
public:
    explicit NameModel(const QStringList &names)
    {
        for (const QString &name : names)
            appendRow(new QStandardItem(name));
    }

    bool setData(const QModelIndex &index, const QVariant &value, int role) override
    {
        if (value.toString() == editStarted && role == Qt::UserRole) {
            notices.append(index);
            if (onNotice)
                onNotice();
            return false;
        }
        return QStandardItemModel::setData(index, value, role);
    }

    QMimeData *mimeData(const QModelIndexList &indexes) const override
    {
        requests.append(indexes.size());
        if (payload.isNull())
            return nullptr;
        auto *data = new QMimeData;
        data->setData(mimeType, payload);
        handedOut.append(data);
        return data;
    }

    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction | Qt::MoveAction; }

    QList<QPersistentModelIndex> notices;
    std::function<void()> onNotice;
    QString mimeType = QStringLiteral("application/json");
    QByteArray payload = "{\"srcList\":[]}";
    mutable QList<int> requests;
    mutable QList<QPointer<QMimeData>> handedOut;
};

/// Ends its drags at once, as the test says, and notes what they carried.
class ScriptedView final : public QEditableTreeView
{
public:
    using QEditableTreeView::dropEvent;
    using QEditableTreeView::startDrag;

    bool isEditing() const { return state() == EditingState; }

    Qt::DropAction outcome = Qt::MoveAction;
    std::function<void(QDrag &)> look;
    int drags = 0;

protected:
    Qt::DropAction execDrag(QDrag &drag) override
    {
        ++drags;
        // Copies: a test may destroy the view meanwhile.
        const Qt::DropAction answer = outcome;
        const auto lookOnce = look;
        if (lookOnce)
            lookOnce(drag);
        return answer;
    }
};

struct Sample
{
    Sample()
        : model({QStringLiteral("Масло"), QStringLiteral("Цепь"), QStringLiteral("Тормоза")})
        , tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal)
    {
        view.setSelectionMode(QAbstractItemView::ExtendedSelection);
        view.setModel(&model);
        view.resize(300, 200);
    }

    bool show()
    {
        view.show();
        view.activateWindow();
        return QTest::qWaitForWindowActive(&view);
    }

    QLineEdit *editor() const { return view.viewport()->findChild<QLineEdit *>(); }

    NameModel model;
    QAbstractItemModelTester tester;
    ScriptedView view;
};

} // namespace

void TestQEditableTreeView::theSignalsAndTheSlotComeInOrder()
{
    const QMetaObject &meta = QEditableTreeView::staticMetaObject;
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        names.append(QString::fromLatin1(meta.method(i).methodSignature()));
    QCOMPARE(names,
             QStringList({QStringLiteral("ctrlReturnClicked(QModelIndex)"),
                          QStringLiteral("ctrlDelClicked(QModelIndex)"),
                          QStringLiteral("updateSelection(QItemSelection,QItemSelection)"),
                          QStringLiteral("delClicked(int,int)"),
                          QStringLiteral("itemsDroppedOut(QJsonArray,const QObject*)"),
                          QStringLiteral("selectionChanged(QItemSelection,QItemSelection)")}));
}

namespace {

enum class Cell { None, Editable, ReadOnly };
/// What a key does, beyond the view's usual handling.
enum class Effect { Nothing, CtrlReturn, CtrlDel, Del, StartEditing };

} // namespace

Q_DECLARE_METATYPE(Cell)
Q_DECLARE_METATYPE(Effect)
Q_DECLARE_METATYPE(Qt::KeyboardModifiers)

void TestQEditableTreeView::eachKeyDoesItsOwnThing_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<Cell>("cell");
    QTest::addColumn<bool>("editing");
    QTest::addColumn<Effect>("effect");

    struct Row
    {
        const char *name;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        Effect effect;
        Effect effectWhileEditing;
    };
    const Row rows[] = {
        {"Ctrl+Return", Qt::Key_Return, Qt::ControlModifier, Effect::CtrlReturn, Effect::CtrlReturn},
        {"Ctrl+Shift+Return", Qt::Key_Return, Qt::ControlModifier | Qt::ShiftModifier, Effect::CtrlReturn,
         Effect::CtrlReturn},
        {"Insert", Qt::Key_Insert, Qt::NoModifier, Effect::CtrlReturn, Effect::CtrlReturn},
        {"Ctrl+Insert", Qt::Key_Insert, Qt::ControlModifier, Effect::CtrlReturn, Effect::CtrlReturn},
        {"Alt+Insert", Qt::Key_Insert, Qt::AltModifier, Effect::CtrlReturn, Effect::CtrlReturn},
        {"Ctrl+Delete", Qt::Key_Delete, Qt::ControlModifier, Effect::CtrlDel, Effect::CtrlDel},
        {"Delete", Qt::Key_Delete, Qt::NoModifier, Effect::Del, Effect::Nothing},
        {"Shift+Delete", Qt::Key_Delete, Qt::ShiftModifier, Effect::Del, Effect::Nothing},
        {"Return", Qt::Key_Return, Qt::NoModifier, Effect::StartEditing, Effect::Nothing},
        {"Enter", Qt::Key_Enter, Qt::KeypadModifier, Effect::StartEditing, Effect::Nothing},
        {"Ctrl+Enter", Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier, Effect::StartEditing,
         Effect::Nothing},
        {"F2", Qt::Key_F2, Qt::NoModifier, Effect::StartEditing, Effect::Nothing},
        {"Ctrl+F2", Qt::Key_F2, Qt::ControlModifier, Effect::StartEditing, Effect::Nothing},
        {"Space", Qt::Key_Space, Qt::NoModifier, Effect::Nothing, Effect::Nothing},
        {"Down", Qt::Key_Down, Qt::NoModifier, Effect::Nothing, Effect::Nothing},
        {"Backspace", Qt::Key_Backspace, Qt::NoModifier, Effect::Nothing, Effect::Nothing},
    };
    for (const Row &row : rows) {
        const auto add = [&row](const char *where, Cell cell, bool editing, Effect effect) {
            QTest::addRow("%s, %s", row.name, where) << row.key << row.modifiers << cell << editing << effect;
        };
        add("editable cell", Cell::Editable, false, row.effect);
        add("read-only cell", Cell::ReadOnly, false, row.effect);
        add("no cell", Cell::None, false, row.effect);
        add("open editor", Cell::Editable, true, row.effectWhileEditing);
    }
}

void TestQEditableTreeView::eachKeyDoesItsOwnThing()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(Cell, cell);
    QFETCH(bool, editing);
    QFETCH(Effect, effect);
    Sample sample;
    QVERIFY(sample.show());
    sample.model.item(1)->setEditable(cell != Cell::ReadOnly);
    const QModelIndex current = cell == Cell::None ? QModelIndex() : sample.model.index(1, 0);
    sample.view.setCurrentIndex(current);
    if (editing)
        sample.view.edit(current);
    QCOMPARE(sample.view.isEditing(), editing);

    QList<QModelIndex> ctrlReturns, ctrlDels;
    QList<QPoint> dels;
    connect(&sample.view, &QEditableTreeView::ctrlReturnClicked, this,
            [&](const QModelIndex &index) { ctrlReturns.append(index); });
    connect(&sample.view, &QEditableTreeView::ctrlDelClicked, this,
            [&](const QModelIndex &index) { ctrlDels.append(index); });
    connect(&sample.view, &QEditableTreeView::delClicked, this,
            [&](int row, int column) { dels.append(QPoint(row, column)); });
    QTest::keyClick(&sample.view, key, modifiers);

    const auto onlyFor = [effect](Effect wanted, const auto &value) {
        std::decay_t<decltype(value)> list;
        if (effect == wanted)
            list = value;
        return list;
    };
    QCOMPARE(ctrlReturns, onlyFor(Effect::CtrlReturn, QList<QModelIndex> {current}));
    QCOMPARE(ctrlDels, onlyFor(Effect::CtrlDel, QList<QModelIndex> {current}));
    QCOMPARE(dels, onlyFor(Effect::Del, QList<QPoint> {QPoint(current.row(), current.column())}));
    QCOMPARE(sample.model.notices,
             onlyFor(Effect::StartEditing, QList<QPersistentModelIndex> {QPersistentModelIndex(current)}));
    if (!editing)
        QCOMPARE(sample.view.isEditing(), effect == Effect::StartEditing && cell == Cell::Editable);
    // Whatever a key did, the view's own handling came after it.
    if (key == Qt::Key_Down && cell == Cell::Editable && !editing)
        QCOMPARE(sample.view.currentIndex(), sample.model.index(2, 0));
}

void TestQEditableTreeView::theNoticeOfEditingComesBeforeTheEditor()
{
    Sample sample;
    QVERIFY(sample.show());
    sample.view.setCurrentIndex(sample.model.index(0, 0));
    bool wasEditing = true;
    sample.model.onNotice = [&] { wasEditing = sample.view.isEditing(); };
    QTest::keyClick(&sample.view, Qt::Key_Return);
    QCOMPARE(sample.model.notices.size(), 1);
    QVERIFY(!wasEditing);
    QVERIFY(sample.editor());
    QCOMPARE(sample.editor()->text(), QStringLiteral("Масло"));

    sample.editor()->setText(QStringLiteral("Фильтр"));
    QTest::keyClick(sample.editor(), Qt::Key_Return);
    QTRY_VERIFY(!sample.view.isEditing());
    QCOMPARE(sample.model.item(0)->text(), QStringLiteral("Фильтр"));
    QCOMPARE(sample.model.notices.size(), 1);
}

void TestQEditableTreeView::theDeleteKeyWhileEditingStaysInTheEditor()
{
    Sample sample;
    QVERIFY(sample.show());
    sample.view.setCurrentIndex(sample.model.index(0, 0));
    QTest::keyClick(&sample.view, Qt::Key_F2);
    QVERIFY(sample.editor());
    QSignalSpy del(&sample.view, &QEditableTreeView::delClicked);
    sample.editor()->setCursorPosition(0);
    QTest::keyClick(sample.editor(), Qt::Key_Delete);
    QVERIFY(del.isEmpty());
    QCOMPARE(sample.editor()->text(), QStringLiteral("асло"));
}

void TestQEditableTreeView::withoutAModelEveryKeyIsQuiet()
{
    QEditableTreeView view;
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QSignalSpy ctrlReturn(&view, &QEditableTreeView::ctrlReturnClicked);
    QSignalSpy del(&view, &QEditableTreeView::delClicked);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2, Qt::Key_Delete, Qt::Key_Insert})
        QTest::keyClick(&view, key);
    QCOMPARE(ctrlReturn.size(), 1);
    QVERIFY(!ctrlReturn.first().first().toModelIndex().isValid());
    QCOMPARE(del, QList<QVariantList>({{-1, -1}}));
}

void TestQEditableTreeView::aPressRecordsTheCellAndTheModifiers()
{
    Sample sample;
    QVERIFY(sample.show());
    QVERIFY(!sample.view.pressedIndex().isValid());
    QCOMPARE(sample.view.pressModifiers(), Qt::KeyboardModifiers());

    const QModelIndex second = sample.model.index(1, 0);
    QTest::mouseClick(sample.view.viewport(), Qt::LeftButton, Qt::ControlModifier,
                      sample.view.visualRect(second).center());
    QCOMPARE(sample.view.pressedIndex(), second);
    QCOMPARE(sample.view.pressModifiers(), Qt::KeyboardModifiers(Qt::ControlModifier));
    QVERIFY(sample.view.selectionModel()->isSelected(second));

    QTest::mouseClick(sample.view.viewport(), Qt::LeftButton, {}, QPoint(20, 150));
    QVERIFY(!sample.view.pressedIndex().isValid());
    QCOMPARE(sample.view.pressModifiers(), Qt::KeyboardModifiers());
}

void TestQEditableTreeView::aDropRecordsWhereItHappened()
{
    Sample sample;
    sample.view.setAcceptDrops(true);
    QVERIFY(sample.show());
    QCOMPARE(sample.view.lastDropPoint(), QPoint());
    QMimeData data;
    data.setText(QStringLiteral("nothing for a list"));
    QDropEvent drop(QPointF(31, 47), Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    sample.view.dropEvent(&drop);
    QCOMPARE(sample.view.lastDropPoint(), sample.view.mapToGlobal(QPoint(31, 47)));
    QCOMPARE(sample.model.rowCount(), 3);
}

void TestQEditableTreeView::everySelectionChangeIsPassedOn()
{
    Sample sample;
    QVERIFY(sample.show());
    sample.view.setCurrentIndex(sample.model.index(0, 0));
    QSignalSpy changes(&sample.view, &QEditableTreeView::updateSelection);
    QTest::mouseClick(sample.view.viewport(), Qt::LeftButton, {},
                      sample.view.visualRect(sample.model.index(2, 0)).center());
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.first().at(0).value<QItemSelection>().indexes(),
             QModelIndexList {sample.model.index(2, 0)});
    QCOMPARE(changes.first().at(1).value<QItemSelection>().indexes(),
             QModelIndexList {sample.model.index(0, 0)});
    sample.view.clearSelection();
    QCOMPARE(changes.size(), 2);
    QVERIFY(changes.last().at(0).value<QItemSelection>().isEmpty());
}

namespace {

const QByteArray twoItems = "{\"extra\":1,\"srcList\":[{\"name\":\"K7\",\"id\":7},{\"name\":\"K8\"}]}";

QJsonArray srcList(const QByteArray &payload)
{
    return QJsonDocument::fromJson(payload).object().value(QLatin1String("srcList")).toArray();
}

} // namespace

void TestQEditableTreeView::onlyAMoveTakesItemsOut_data()
{
    QTest::addColumn<Qt::DropAction>("outcome");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<bool>("isTakenOut");
    QTest::newRow("moved") << Qt::MoveAction << twoItems << true;
    QTest::newRow("moved, no list") << Qt::MoveAction << QByteArray("{\"other\":[1]}") << true;
    QTest::newRow("moved, list of another kind") << Qt::MoveAction << QByteArray("{\"srcList\":3}") << true;
    QTest::newRow("copied") << Qt::CopyAction << twoItems << false;
    QTest::newRow("linked") << Qt::LinkAction << twoItems << false;
    QTest::newRow("cancelled") << Qt::IgnoreAction << twoItems << false;
    QTest::newRow("moved by the target") << Qt::TargetMoveAction << twoItems << false;
}

void TestQEditableTreeView::onlyAMoveTakesItemsOut()
{
    QFETCH(Qt::DropAction, outcome);
    QFETCH(QByteArray, payload);
    QFETCH(bool, isTakenOut);
    Sample sample;
    sample.model.payload = payload;
    sample.view.outcome = outcome;
    sample.view.selectAll();
    QList<QJsonArray> taken;
    connect(&sample.view, &QEditableTreeView::itemsDroppedOut, this,
            [&](const QJsonArray &items, const QObject *) { taken.append(items); });
    sample.view.startDrag(Qt::CopyAction | Qt::MoveAction);
    QCOMPARE(sample.view.drags, 1);
    QCOMPARE(taken, isTakenOut ? QList<QJsonArray> {srcList(payload)} : QList<QJsonArray>());
    QCOMPARE(sample.model.requests, QList<int> {3});
    QCOMPARE(sample.model.rowCount(), 3);
}

void TestQEditableTreeView::theDragCarriesPayloadAndPicture()
{
    Sample sample;
    sample.model.payload = twoItems;
    sample.view.setCurrentIndex(sample.model.index(1, 0));
    sample.view.look = [&](QDrag &drag) {
        QCOMPARE(drag.parent(), &sample.view);
        QCOMPARE(drag.source(), &sample.view);
        QCOMPARE(drag.hotSpot(), QPoint(0, 0));
        QCOMPARE(drag.mimeData(), sample.model.handedOut.value(0).data());
        QCOMPARE(drag.mimeData()->data(QStringLiteral("application/json")), twoItems);
        QCOMPARE(drag.pixmap().toImage(), QEditableTreeView::dragPixmap(srcList(twoItems)).toImage());
    };
    sample.view.startDrag(Qt::MoveAction);
    QCOMPARE(sample.view.drags, 1);
    QCOMPARE(sample.model.requests, QList<int> {1});
}

void TestQEditableTreeView::otherModelsAreDraggedAsUsual_data()
{
    QTest::addColumn<QString>("mimeType");
    QTest::addColumn<QByteArray>("payload");
    QTest::newRow("another type") << QStringLiteral("text/plain") << twoItems;
    QTest::newRow("no JSON") << QStringLiteral("application/json") << QByteArray("{\"srcList\":[");
    QTest::newRow("an array") << QStringLiteral("application/json") << QByteArray("[1,2]");
    QTest::newRow("empty") << QStringLiteral("application/json") << QByteArray("");
    QTest::newRow("no mime data") << QString() << QByteArray();
}

void TestQEditableTreeView::otherModelsAreDraggedAsUsual()
{
    QFETCH(QString, mimeType);
    QFETCH(QByteArray, payload);
    Sample sample;
    sample.model.mimeType = mimeType;
    sample.model.payload = payload;
    QVERIFY(sample.show());
    sample.view.setCurrentIndex(sample.model.index(1, 0));
    int taken = 0;
    connect(&sample.view, &QEditableTreeView::itemsDroppedOut, this, [&taken] { ++taken; });

    QTimer cancel; // the usual drag runs until the user ends it
    connect(&cancel, &QTimer::timeout, &QDrag::cancel);
    cancel.start(10);
    sample.view.startDrag(Qt::CopyAction | Qt::MoveAction);
    cancel.stop();

    QCOMPARE(sample.view.drags, 0);
    QCOMPARE(taken, 0);
    QCOMPARE(sample.model.requests, QList<int>({1, 1}));
    for (const QPointer<QMimeData> &data : qAsConst(sample.model.handedOut))
        QTRY_VERIFY(!data);
}

void TestQEditableTreeView::nothingSelectedDragsNothing()
{
    Sample sample;
    sample.view.clearSelection();
    sample.view.startDrag(Qt::MoveAction);
    QCOMPARE(sample.view.drags, 0);
    QVERIFY(sample.model.requests.isEmpty());

    ScriptedView empty;
    empty.startDrag(Qt::MoveAction);
    QCOMPARE(empty.drags, 0);
}

void TestQEditableTreeView::withoutTheMoveActionNoPayloadIsAskedFor()
{
    Sample sample;
    sample.model.payload = QByteArray(); // ends the usual drag at once
    sample.view.setCurrentIndex(sample.model.index(1, 0));
    sample.view.startDrag(Qt::CopyAction);
    QCOMPARE(sample.view.drags, 0);
    QCOMPARE(sample.model.requests, QList<int> {1});
}

void TestQEditableTreeView::theViewMayDieDuringTheDrag()
{
    NameModel model({QStringLiteral("Масло")});
    auto *const view = new ScriptedView;
    const QPointer<ScriptedView> alive(view);
    view->setModel(&model);
    view->setCurrentIndex(model.index(0, 0));
    int taken = 0;
    connect(view, &QEditableTreeView::itemsDroppedOut, this, [&taken] { ++taken; });
    view->look = [view](QDrag &) { delete view; };
    view->startDrag(Qt::MoveAction);
    QVERIFY(!alive);
    QCOMPARE(taken, 0);
}

namespace {

/// A card's outline runs from its corner to the given last pixel.
struct Card
{
    int first;
    int last;
};

QImage expectedPicture(const QVector<Card> &cards, const QColor &fill, const QString &label)
{
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (const Card &card : cards) {
        for (int y = card.first; y <= card.last; ++y) {
            for (int x = card.first; x <= card.last; ++x) {
                const bool isOutline = x == card.first || x == card.last || y == card.first || y == card.last;
                image.setPixelColor(x, y, isOutline ? QColor(Qt::black) : fill);
            }
        }
    }
    QPixmap pixmap = QPixmap::fromImage(image);
    QPainter painter(&pixmap);
    painter.setPen(Qt::black);
    painter.drawText(pixmap.rect(), Qt::AlignCenter, label);
    painter.end();
    return pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
}

} // namespace

void TestQEditableTreeView::thePictureShowsOneCardOrAStack_data()
{
    QTest::addColumn<QByteArray>("items");
    QTest::addColumn<bool>("isStack");
    QTest::addColumn<QColor>("fill");
    QTest::addColumn<QString>("label");
    QTest::newRow("no item") << QByteArray("[]") << false << QColor(Qt::white) << QString();
    QTest::newRow("one red item") << QByteArray(R"([{"name":"K7","color":"#ff0000"}])") << false
                                  << QColor(Qt::red) << QStringLiteral("K7");
    QTest::newRow("a named colour") << QByteArray(R"([{"name":"K7","color":"yellow"}])") << false
                                    << QColor(Qt::yellow) << QStringLiteral("K7");
    // A colour that cannot be read is painted as the toolkit paints an invalid one.
    QTest::newRow("no colour") << QByteArray(R"([{"name":"K7"}])") << false << QColor(Qt::black)
                               << QStringLiteral("K7");
    QTest::newRow("no object") << QByteArray("[5]") << false << QColor(Qt::black) << QString();
    QTest::newRow("two items") << QByteArray(R"([{"name":"K7","color":"#ff0000"},{}])") << true
                               << QColor(Qt::white) << QStringLiteral("x 2");
    QTest::newRow("four items") << QByteArray("[{},{},{},{}]") << true << QColor(Qt::white)
                                << QStringLiteral("x 4");
}

void TestQEditableTreeView::thePictureShowsOneCardOrAStack()
{
    QFETCH(QByteArray, items);
    QFETCH(bool, isStack);
    QFETCH(QColor, fill);
    QFETCH(QString, label);
    const QPixmap pixmap = QEditableTreeView::dragPixmap(QJsonDocument::fromJson(items).array());
    QCOMPARE(pixmap.size(), QSize(64, 64));
    const QVector<Card> cards = isStack ? QVector<Card> {{0, 47}, {4, 55}, {8, 63}} : QVector<Card> {{0, 63}};
    QCOMPARE(pixmap.toImage().convertToFormat(QImage::Format_ARGB32), expectedPicture(cards, fill, label));
}

void TestQEditableTreeView::theLabelStandsInTheMiddle_data()
{
    QTest::addColumn<QByteArray>("items");
    QTest::newRow("name") << QByteArray(R"([{"name":"HH","color":"#ffffff"}])");
    QTest::newRow("number") << QByteArray("[{},{},{}]");
}

void TestQEditableTreeView::theLabelStandsInTheMiddle()
{
    QFETCH(QByteArray, items);
    const QImage image = QEditableTreeView::dragPixmap(QJsonDocument::fromJson(items).array()).toImage();
    QRect ink;
    for (int y = 10; y < 62; ++y)
        for (int x = 10; x < 62; ++x)
            if (qGray(image.pixel(x, y)) < 128)
                ink |= QRect(x, y, 1, 1);
    QVERIFY(ink.width() > 8 && ink.height() > 5);
    QVERIFY2(qAbs(ink.center().x() - 32) <= 2, "centred across");
    QVERIFY2(qAbs(ink.center().y() - 32) <= 4, "centred between ascent and descent");
}

QTEST_MAIN(TestQEditableTreeView)
#include "tst_qeditabletreeview.moc"
