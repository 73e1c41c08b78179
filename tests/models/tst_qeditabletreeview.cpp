#include "models/qeditabletreeview.h"
#include "support/garagetest.h"

#include <QAbstractItemModelTester>
#include <QDrag>
#include <QDropEvent>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMetaMethod>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <QStandardItemModel>

#include <functional>
#include <memory>

/// A list that is edited by keys and drags what its model describes.
class TestQEditableTreeView : public GarageTest
{
    Q_OBJECT
private slots:
    void methodsStandInTheirOrder();
    void aKeyDoesWhatItMeans_data();
    void aKeyDoesWhatItMeans();
    void theModelIsToldBeforeTheEditorOpens();
    void everyKeyStillReachesTheBase_data();
    void everyKeyStillReachesTheBase();
    void keysInAnOpenEditorAreTheEditors_data();
    void keysInAnOpenEditorAreTheEditors();
    void aViewWithoutModelBearsEveryKey();
    void theCellIsLookedUpUnderTheInvisibleRoot();
    void aPressIsRecorded();
    void aPressedItemThatGoesIsForgotten();
    void aDropIsRecorded();
    void everySelectionChangeIsTold();
    void onlyAMoveTellsWhatWasDroppedOut_data();
    void onlyAMoveTellsWhatWasDroppedOut();
    void theDragCarriesThePayloadAndItsPicture();
    void theMouseStartsTheDrag();
    void nothingIsDraggedWithoutASelection();
    void otherDragsAreTheBases_data();
    void otherDragsAreTheBases();
    void aRealDragThatIsNotTakenEmitsNothing();
    void aViewThatDiesInADragEmitsNothing();
    void oneItemIsDrawnAsACard_data();
    void oneItemIsDrawnAsACard();
    void severalItemsAreDrawnAsAStack_data();
    void severalItemsAreDrawnAsAStack();
    void theLabelIsCentred_data();
    void theLabelIsCentred();
};

namespace {

QString cellText(const QModelIndex &index)
{
    return index.isValid() ? QString("%1,%2").arg(index.row()).arg(index.column()) : "nowhere";
}

/// Writes down what it is told in the user role.
class ListModel final : public QStandardItemModel
{
public:
    explicit ListModel(QStringList *log) : QStandardItemModel(3, 1), m_log(log)
    {
        for (int row = 0; row < rowCount(); ++row)
            QStandardItemModel::setData(index(row, 0), QString("item %1").arg(row), Qt::EditRole);
    }

    bool setData(const QModelIndex &index, const QVariant &value, int role) override
    {
        if (role != Qt::UserRole)
            return QStandardItemModel::setData(index, value, role);
        m_log->append(QString("told %1 %2").arg(cellText(index), value.toString()));
        if (onTold)
            onTold();
        return true;
    }

    QMimeData *mimeData(const QModelIndexList &) const override
    {
        ++mimeDataCalls;
        QMimeData *made = makeMimeData ? makeMimeData() : nullptr;
        if (!firstMade)
            firstMade = made;
        return made;
    }

    std::function<void()> onTold;
    std::function<QMimeData *()> makeMimeData;
    mutable int mimeDataCalls = 0;
    mutable QPointer<QMimeData> firstMade;

private:
    QStringList *const m_log;
};

/// A drag ends as the test wants it to, without a platform's drag.
class ListView final : public QEditableTreeView
{
public:
    using QEditableTreeView::execDrag;
    using QEditableTreeView::selectedIndexes;
    using QEditableTreeView::startDrag;

    bool isEditing() const { return state() == EditingState; }

    std::function<Qt::DropAction(QDrag &)> onDrag;

protected:
    Qt::DropAction execDrag(QDrag &drag) override
    {
        return onDrag ? onDrag(drag) : QEditableTreeView::execDrag(drag);
    }
};

/// A shown list of three items whose signals are written down.
struct List
{
    List() : model(&log)
    {
        view.setModel(&model);
        view.setDragEnabled(true);
        view.setSelectionMode(QAbstractItemView::ExtendedSelection);
        QObject::connect(&view, &QEditableTreeView::ctrlReturnClicked, &model,
                         [this](const QModelIndex &at) { log.append("ctrlReturn " + cellText(at)); });
        QObject::connect(&view, &QEditableTreeView::ctrlDelClicked, &model,
                         [this](const QModelIndex &at) { log.append("ctrlDel " + cellText(at)); });
        QObject::connect(&view, &QEditableTreeView::delClicked, &model, [this](int row, int column) {
            log.append(QString("del %1,%2").arg(row).arg(column));
        });
        QObject::connect(&view, &QEditableTreeView::itemsDroppedOut, &model,
                         [this](const QJsonArray &items, const QObject *target) {
                             log.append(
                                 "dropped "
                                 + QString::fromUtf8(QJsonDocument(items).toJson(QJsonDocument::Compact)));
                             dropTarget = target;
                         });
        view.resize(300, 200);
        view.show();
    }

    void startDrag(Qt::DropActions supported = Qt::MoveAction | Qt::CopyAction) { view.startDrag(supported); }

    QLineEdit *editor() const { return view.findChild<QLineEdit *>(); }

    QStringList log;
    const QObject *dropTarget = nullptr;
    ListModel model;
    QAbstractItemModelTester tester {&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    ListView view;
};

QMimeData *mimeDataOf(const QByteArray &content, const QString &type = "application/json")
{
    auto *data = new QMimeData;
    data->setData(type, content);
    return data;
}

const QByteArray payload = R"({"from":"list","srcList":[{"name":"K7","color":"#ff0000","id":7}]})";
const QString droppedOut = R"(dropped [{"color":"#ff0000","id":7,"name":"K7"}])";

} // namespace

void TestQEditableTreeView::methodsStandInTheirOrder()
{
    const QMetaObject &meta = QEditableTreeView::staticMetaObject;
    QList<QByteArray> methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods.append(meta.method(i).methodSignature());
    QCOMPARE(methods,
             QList<QByteArray>({"ctrlReturnClicked(QModelIndex)", "ctrlDelClicked(QModelIndex)",
                                "updateSelection(QItemSelection,QItemSelection)", "delClicked(int,int)",
                                "itemsDroppedOut(QJsonArray,const QObject*)",
                                "selectionChanged(QItemSelection,QItemSelection)"}));
    QCOMPARE(meta.method(meta.methodOffset() + 5).methodType(), QMetaMethod::Slot);

    const QEditableTreeView view;
    QCOMPARE(view.lastDropPoint(), QPoint(0, 0));
    QVERIFY(!view.pressedIndex().isValid());
    QCOMPARE(view.pressModifiers(), Qt::KeyboardModifiers());
}

void TestQEditableTreeView::aKeyDoesWhatItMeans_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("current");
    QTest::addColumn<bool>("editing");
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<bool>("opens");

    const struct
    {
        const char *name;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        const char *says; ///< what stands before the place
        bool evenWhileEditing;
    } keys[] = {
        {"Return", Qt::Key_Return, Qt::NoModifier, "told", false},
        {"Shift+Return", Qt::Key_Return, Qt::ShiftModifier, "told", false},
        {"Ctrl+Return", Qt::Key_Return, Qt::ControlModifier, "ctrlReturn", true},
        {"Ctrl+Shift+Return", Qt::Key_Return, Qt::ControlModifier | Qt::ShiftModifier, "ctrlReturn", true},
        {"Enter", Qt::Key_Enter, Qt::KeypadModifier, "told", false},
        {"Ctrl+Enter", Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier, "told", false},
        {"F2", Qt::Key_F2, Qt::NoModifier, "told", false},
        {"Ctrl+F2", Qt::Key_F2, Qt::ControlModifier, "told", false},
        {"Insert", Qt::Key_Insert, Qt::NoModifier, "ctrlReturn", true},
        {"Ctrl+Insert", Qt::Key_Insert, Qt::ControlModifier, "ctrlReturn", true},
        {"Alt+Insert", Qt::Key_Insert, Qt::AltModifier, "ctrlReturn", true},
        {"Delete", Qt::Key_Delete, Qt::NoModifier, "del", false},
        {"Shift+Delete", Qt::Key_Delete, Qt::ShiftModifier, "del", false},
        {"Ctrl+Delete", Qt::Key_Delete, Qt::ControlModifier, "ctrlDel", true},
        {"Backspace", Qt::Key_Backspace, Qt::NoModifier, "", false},
        {"F3", Qt::Key_F3, Qt::NoModifier, "", false}};
    const QString places[] = {"editable", "read-only", "disabled", "nowhere"};
    for (const auto &key : keys) {
        const QString says = QLatin1String(key.says);
        const auto expect = [&says](const QString &place) -> QStringList {
            if (says.isEmpty())
                return {};
            if (says == "del" && place == "nowhere")
                return {"del -1,-1"};
            const QString tail = says == "told" ? " editStarted" : QString();
            return {says + ' ' + place + tail};
        };
        for (const QString &current : places) {
            const QString at = current == "nowhere" ? current : "1,0";
            const bool opens = says == "told" && current == "editable";
            QTest::addRow("%s, %s", key.name, qPrintable(current))
                << int(key.key) << int(key.modifiers) << current << false << expect(at) << opens;
        }
        QTest::addRow("%s, editor open", key.name)
            << int(key.key) << int(key.modifiers) << places[0] << true
            << (key.evenWhileEditing ? expect("1,0") : QStringList()) << true;
    }
}

void TestQEditableTreeView::aKeyDoesWhatItMeans()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QString, current);
    QFETCH(bool, editing);
    List list;
    QVERIFY(QTest::qWaitForWindowActive(&list.view));
    const QModelIndex at = list.model.index(1, 0);
    if (current == "read-only")
        list.model.itemFromIndex(at)->setEditable(false);
    else if (current == "disabled")
        list.model.itemFromIndex(at)->setEnabled(false);
    list.view.selectionModel()->setCurrentIndex(current == "nowhere" ? QModelIndex() : at,
                                                QItemSelectionModel::NoUpdate);
    if (editing)
        list.view.edit(at);

    QTest::keyClick(&list.view, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QTEST(list.log, "log");
    QTEST(list.view.isEditing(), "opens");
    QCOMPARE(list.editor() != nullptr, list.view.isEditing());
    QCOMPARE(list.model.rowCount(), 3);
}

void TestQEditableTreeView::theModelIsToldBeforeTheEditorOpens()
{
    List list;
    QVERIFY(QTest::qWaitForWindowActive(&list.view));
    list.view.setCurrentIndex(list.model.index(1, 0));
    list.model.onTold = [&list] { list.log.append(list.view.isEditing() ? "late" : "in time"); };
    QTest::keyClick(&list.view, Qt::Key_Return);
    QCOMPARE(list.log, QStringList({"told 1,0 editStarted", "in time"}));
    QVERIFY(list.view.isEditing());
}

void TestQEditableTreeView::everyKeyStillReachesTheBase_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("activations");
    QTest::addColumn<int>("row");
    // An editor that was opened has the key's activation.
    QTest::newRow("Ctrl+Return activates") << int(Qt::CTRL | Qt::Key_Return) << 1 << 1;
    QTest::newRow("Return on a read-only cell activates") << int(Qt::Key_Return) << 1 << 1;
    QTest::newRow("Down moves") << int(Qt::Key_Down) << 0 << 2;
    QTest::newRow("Home moves") << int(Qt::Key_Home) << 0 << 0;
}

void TestQEditableTreeView::everyKeyStillReachesTheBase()
{
    QFETCH(int, key);
    List list;
    QVERIFY(QTest::qWaitForWindowActive(&list.view));
    list.model.item(1)->setEditable(false);
    list.view.setCurrentIndex(list.model.index(1, 0));
    const QSignalSpy activated(&list.view, &QAbstractItemView::activated);
    QTest::keyClick(&list.view, Qt::Key(key & ~int(Qt::KeyboardModifierMask)),
                    Qt::KeyboardModifiers(key & int(Qt::KeyboardModifierMask)));
    QTEST(activated.count(), "activations");
    QTEST(list.view.currentIndex().row(), "row");
}

void TestQEditableTreeView::keysInAnOpenEditorAreTheEditors_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("Return commits") << int(Qt::Key_Return) << "new";
    QTest::newRow("Enter commits") << int(Qt::Key_Enter) << "new";
    QTest::newRow("Escape drops") << int(Qt::Key_Escape) << "item 1";
    QTest::newRow("Delete stays in the text") << int(Qt::Key_Delete) << QString();
    QTest::newRow("F2 changes nothing") << int(Qt::Key_F2) << QString();
}

void TestQEditableTreeView::keysInAnOpenEditorAreTheEditors()
{
    QFETCH(int, key);
    QFETCH(QString, text);
    List list;
    QVERIFY(QTest::qWaitForWindowActive(&list.view));
    list.view.setCurrentIndex(list.model.index(1, 0));
    QTest::keyClick(&list.view, Qt::Key_F2);
    const QPointer<QLineEdit> editor = list.editor();
    QVERIFY(editor && editor->hasFocus());
    QTest::keyClicks(editor, "new");
    list.log.clear();

    QTest::keyClick(editor, Qt::Key(key));
    if (text.isEmpty()) {
        QVERIFY(list.view.isEditing());
        QCOMPARE(editor->text(), "new");
    } else {
        QTRY_VERIFY(!editor);
        QVERIFY(!list.view.isEditing());
        QCOMPARE(list.model.item(1)->text(), text);
    }
    QCOMPARE(list.log, QStringList());
}

void TestQEditableTreeView::aViewWithoutModelBearsEveryKey()
{
    QEditableTreeView view;
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    int told = 0;
    connect(&view, &QEditableTreeView::ctrlReturnClicked, this,
            [&told](const QModelIndex &index) { told += index.isValid() ? 100 : 1; });
    connect(&view, &QEditableTreeView::ctrlDelClicked, this,
            [&told](const QModelIndex &index) { told += index.isValid() ? 100 : 1; });
    connect(&view, &QEditableTreeView::delClicked, this,
            [&told](int row, int column) { told += row == -1 && column == -1 ? 1 : 100; });
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2, Qt::Key_Insert, Qt::Key_Delete}) {
        QTest::keyClick(&view, key);
        QTest::keyClick(&view, key, Qt::ControlModifier);
    }
    QCOMPARE(told, 5);
    QTest::mouseClick(view.viewport(), Qt::LeftButton);
    QVERIFY(!view.pressedIndex().isValid());
}

void TestQEditableTreeView::theCellIsLookedUpUnderTheInvisibleRoot()
{
    QStandardItemModel model(3, 1);
    for (int row = 0; row < 3; ++row)
        model.setItem(row, new QStandardItem(QString::number(row)));
    model.item(0)->appendRow(new QStandardItem("child"));
    ListView view;
    view.setModel(&model);
    view.expandAll();
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    view.setCurrentIndex(model.index(0, 0, model.index(0, 0)));
    QTest::keyClick(&view, Qt::Key_Return);
    auto *editor = view.findChild<QLineEdit *>();
    QVERIFY(editor);
    QCOMPARE(editor->text(), "0");
}

void TestQEditableTreeView::aPressIsRecorded()
{
    List list;
    const auto click = [&list](const QPoint &at, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
        QTest::mouseClick(list.view.viewport(), button, modifiers, at);
    };
    const auto centre = [&list](int row) { return list.view.visualRect(list.model.index(row, 0)).center(); };
    click(centre(2), Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(list.view.pressedIndex(), list.model.index(2, 0));
    QCOMPARE(list.view.pressModifiers(), Qt::KeyboardModifiers(Qt::ControlModifier));
    QVERIFY(list.view.selectionModel()->isSelected(list.model.index(2, 0)));

    click(centre(0), Qt::RightButton, Qt::ShiftModifier | Qt::AltModifier);
    QCOMPARE(list.view.pressedIndex(), list.model.index(0, 0));
    QCOMPARE(list.view.pressModifiers(), Qt::ShiftModifier | Qt::AltModifier);

    click(QPoint(20, 180), Qt::LeftButton, Qt::NoModifier);
    QVERIFY(!list.view.pressedIndex().isValid());
    QCOMPARE(list.view.pressModifiers(), Qt::KeyboardModifiers());
}

void TestQEditableTreeView::aPressedItemThatGoesIsForgotten()
{
    List list;
    const QPoint at = list.view.visualRect(list.model.index(1, 0)).center();
    QTest::mouseClick(list.view.viewport(), Qt::LeftButton, {}, at);
    list.model.removeRow(0);
    QCOMPARE(list.view.pressedIndex(), list.model.index(0, 0));
    list.model.removeRow(0);
    QVERIFY(!list.view.pressedIndex().isValid());
}

void TestQEditableTreeView::aDropIsRecorded()
{
    List list;
    list.view.setAcceptDrops(true);
    list.view.setDragDropMode(QAbstractItemView::DragDrop);
    list.view.move(40, 30);
    const std::unique_ptr<QMimeData> data(list.model.QStandardItemModel::mimeData({list.model.index(0, 0)}));
    const auto dropAt = [&](const QPoint &at) {
        QWidget *viewport = list.view.viewport();
        QDragEnterEvent enter(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(viewport, &enter);
        QDropEvent drop(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(viewport, &drop);
    };
    dropAt({20, 150});
    QCOMPARE(list.view.lastDropPoint(), list.view.mapToGlobal(QPoint(20, 150)));
    QVERIFY(list.view.lastDropPoint() != QPoint(20, 150));
    QCOMPARE(list.model.rowCount(), 4);
    dropAt({0, 0});
    QCOMPARE(list.view.lastDropPoint(), list.view.mapToGlobal(QPoint(0, 0)));
}

void TestQEditableTreeView::everySelectionChangeIsTold()
{
    List list;
    QStringList told;
    connect(&list.view, &QEditableTreeView::updateSelection, this,
            [&](const QItemSelection &selected, const QItemSelection &deselected) {
                QString line = QLatin1String(list.view.selectionModel()->hasSelection() ? "some:" : "none:");
                for (const QModelIndex &index : selected.indexes())
                    line += QString(" +%1").arg(index.row());
                for (const QModelIndex &index : deselected.indexes())
                    line += QString(" -%1").arg(index.row());
                told.append(line);
            });
    const auto click = [&list](int row, Qt::KeyboardModifiers modifiers) {
        QTest::mouseClick(list.view.viewport(), Qt::LeftButton, modifiers,
                          list.view.visualRect(list.model.index(row, 0)).center());
    };
    click(0, Qt::NoModifier);
    click(0, Qt::NoModifier);
    click(1, Qt::ControlModifier);
    click(2, Qt::NoModifier);
    list.view.clearSelection();
    QCOMPARE(told, QStringList({"some: +0", "some: +1", "some: +2 -0 -1", "none: -2"}));
}

void TestQEditableTreeView::onlyAMoveTellsWhatWasDroppedOut_data()
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

void TestQEditableTreeView::onlyAMoveTellsWhatWasDroppedOut()
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

void TestQEditableTreeView::theDragCarriesThePayloadAndItsPicture()
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

void TestQEditableTreeView::theMouseStartsTheDrag()
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

void TestQEditableTreeView::nothingIsDraggedWithoutASelection()
{
    List list;
    list.view.clearSelection();
    list.startDrag();
    QCOMPARE(list.model.mimeDataCalls, 0);

    ListView withoutModel;
    withoutModel.startDrag(Qt::MoveAction);
    QVERIFY(withoutModel.findChildren<QDrag *>().isEmpty());
}

void TestQEditableTreeView::otherDragsAreTheBases_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("supported");
    QTest::addColumn<int>("mimeDataCalls");
    const QString json = "application/json";
    const int both = Qt::MoveAction | Qt::CopyAction;
    // The base asks for mime data of its own; two calls are the view's and the base's.
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

void TestQEditableTreeView::otherDragsAreTheBases()
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

void TestQEditableTreeView::aRealDragThatIsNotTakenEmitsNothing()
{
    for (const QByteArray &json : {payload, QByteArray()}) {
        List list;
        list.model.makeMimeData = [json] { return mimeDataOf(json); };
        list.view.selectAll();
        // The platform's drag, if it waits at all, is given up.
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

void TestQEditableTreeView::aViewThatDiesInADragEmitsNothing()
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

namespace {

QJsonObject item(const QJsonValue &name, const QJsonValue &color)
{
    return {{"name", name}, {"color", color}};
}

/// What a label looks like alone on a filled card, for comparison by pixels.
QImage drawn(const QVector<QRect> &cards, const QColor &fill, const QString &label)
{
    QPixmap pixmap(64, 64);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setPen(Qt::black);
    painter.setBrush(fill);
    for (const QRect &card : cards)
        painter.drawRect(card);
    painter.drawText(QRect(0, 0, 64, 64), Qt::AlignCenter, label);
    painter.end();
    return pixmap.toImage();
}

QImage picture(const QJsonArray &items)
{
    const QPixmap pixmap = QEditableTreeView::dragPixmap(items);
    return pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
}

} // namespace

void TestQEditableTreeView::oneItemIsDrawnAsACard_data()
{
    QTest::addColumn<QJsonArray>("items");
    QTest::addColumn<QColor>("fill");
    // An invalid colour fills with black.
    const QColor none;
    const QString nameless;
    QTest::newRow("red") << QJsonArray {item(nameless, "#ff0000")} << QColor(255, 0, 0);
    QTest::newRow("named") << QJsonArray {item(nameless, "lime")} << QColor(0, 255, 0);
    QTest::newRow("no such colour") << QJsonArray {item(nameless, "kart")} << none;
    QTest::newRow("a number") << QJsonArray {item(nameless, 255)} << none;
    QTest::newRow("no colour") << QJsonArray {QJsonObject()} << none;
    QTest::newRow("no object") << QJsonArray {12} << none;
    QTest::newRow("a name that is a number") << QJsonArray {item(7, "#00f")} << QColor(0, 0, 255);
    QTest::newRow("no item") << QJsonArray() << QColor(255, 255, 255);
}

void TestQEditableTreeView::oneItemIsDrawnAsACard()
{
    QFETCH(QJsonArray, items);
    QFETCH(QColor, fill);
    const QImage image = picture(items);
    QCOMPARE(image.size(), QSize(64, 64));
    // The rectangle's outline is as wide as the pixmap: its last row and column are the outline's own.
    const QColor inside = fill.isValid() ? fill : QColor(Qt::black);
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x) {
            const bool isOutline = x == 0 || y == 0 || x == 63 || y == 63;
            QCOMPARE(image.pixelColor(x, y), isOutline ? QColor(Qt::black) : inside);
        }
    }
}

void TestQEditableTreeView::severalItemsAreDrawnAsAStack_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("two") << 2;
    QTest::newRow("four") << 4;
    QTest::newRow("a thousand") << 1000;
}

void TestQEditableTreeView::severalItemsAreDrawnAsAStack()
{
    QFETCH(int, count);
    QJsonArray items;
    for (int i = 0; i < count; ++i)
        items.append(item("K7", "#ff0000"));
    const QImage image = picture(items);
    QCOMPARE(image.size(), QSize(64, 64));
    // Fill and outline of the three cards, and clear corners beside them.
    for (const QPoint &white : {QPoint(2, 2), QPoint(6, 6), QPoint(10, 10), QPoint(2, 44), QPoint(50, 6)})
        QCOMPARE(image.pixelColor(white), QColor(Qt::white));
    for (const QPoint &black : {QPoint(0, 0), QPoint(47, 0), QPoint(0, 47), QPoint(4, 4), QPoint(8, 8),
                                QPoint(63, 8), QPoint(8, 63), QPoint(63, 63)})
        QCOMPARE(image.pixelColor(black), QColor(Qt::black));
    for (const QPoint &clear : {QPoint(63, 0), QPoint(0, 63), QPoint(49, 2), QPoint(2, 49), QPoint(63, 6)})
        QCOMPARE(image.pixelColor(clear).alpha(), 0);
}

void TestQEditableTreeView::theLabelIsCentred_data()
{
    QTest::addColumn<QJsonArray>("items");
    QTest::addColumn<QString>("label");
    QTest::newRow("a name") << QJsonArray {item("K7", "#ff0000")} << "K7";
    QTest::newRow("a long name") << QJsonArray {item("Замена масла %1 & <b>", "#ff0000")}
                                 << "Замена масла %1 & <b>";
    QJsonArray three;
    for (int i = 0; i < 3; ++i)
        three.append(item("K7", "#ff0000"));
    QTest::newRow("a number") << three << "x 3";
}

void TestQEditableTreeView::theLabelIsCentred()
{
    QFETCH(QJsonArray, items);
    QFETCH(QString, label);
    const bool isOne = items.size() == 1;
    const QVector<QRect> cards = isOne ? QVector<QRect> {{0, 0, 63, 63}}
                                       : QVector<QRect> {{0, 0, 47, 47}, {4, 4, 51, 51}, {8, 8, 55, 55}};
    const QColor fill = isOne ? QColor(255, 0, 0) : QColor(Qt::white);
    QCOMPARE(QEditableTreeView::dragPixmap(items).toImage(), drawn(cards, fill, label));
    QVERIFY(QEditableTreeView::dragPixmap(items).toImage() != drawn(cards, fill, {}));
}

GARAGE_TEST(TestQEditableTreeView)
#include "tst_qeditabletreeview.moc"
