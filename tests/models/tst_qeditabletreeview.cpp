#include "editablelist.h"
#include "support/garagetest.h"

#include <QApplication>
#include <QDropEvent>
#include <QMetaMethod>

#include <memory>

/// The list view: its keys, clicks, drops and selection.
class TestQEditableTreeView : public GarageTest
{
    Q_OBJECT
private slots:
    void methodsAreDeclaredInOrder();
    void aKeyDoesWhatItMeans_data();
    void aKeyDoesWhatItMeans();
    void theModelIsInformedBeforeTheEditorOpens();
    void everyKeyStillReachesTheBase_data();
    void everyKeyStillReachesTheBase();
    void keysInAnOpenEditorAreTheEditors_data();
    void keysInAnOpenEditorAreTheEditors();
    void aViewWithoutModelAcceptsEveryKey();
    void theCellIsLookedUpUnderTheInvisibleRoot();
    void aPressIsRecorded();
    void aRemovedPressedItemIsForgotten();
    void aDropIsRecorded();
    void everySelectionChangeIsReported();
};

void TestQEditableTreeView::methodsAreDeclaredInOrder()
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
        const char *logged; ///< the text before the cell
        bool evenWhileEditing;
    } keys[] = {
        {"Return", Qt::Key_Return, Qt::NoModifier, "set", false},
        {"Shift+Return", Qt::Key_Return, Qt::ShiftModifier, "set", false},
        {"Ctrl+Return", Qt::Key_Return, Qt::ControlModifier, "ctrlReturn", true},
        {"Ctrl+Shift+Return", Qt::Key_Return, Qt::ControlModifier | Qt::ShiftModifier, "ctrlReturn", true},
        {"Enter", Qt::Key_Enter, Qt::KeypadModifier, "set", false},
        {"Ctrl+Enter", Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier, "set", false},
        {"F2", Qt::Key_F2, Qt::NoModifier, "set", false},
        {"Ctrl+F2", Qt::Key_F2, Qt::ControlModifier, "set", false},
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
        const QString logged = key.logged;
        const auto expect = [&logged](const QString &place) -> QStringList {
            if (logged.isEmpty())
                return {};
            if (logged == "del" && place == "nowhere")
                return {"del -1,-1"};
            const QString tail = logged == "set" ? " editStarted" : QString();
            return {logged + ' ' + place + tail};
        };
        for (const QString &current : places) {
            const QString at = current == "nowhere" ? current : "1,0";
            const bool opens = logged == "set" && current == "editable";
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

void TestQEditableTreeView::theModelIsInformedBeforeTheEditorOpens()
{
    List list;
    QVERIFY(QTest::qWaitForWindowActive(&list.view));
    list.view.setCurrentIndex(list.model.index(1, 0));
    list.model.onUserRoleSet = [&list] { list.log.append(list.view.isEditing() ? "late" : "in time"); };
    QTest::keyClick(&list.view, Qt::Key_Return);
    QCOMPARE(list.log, QStringList({"set 1,0 editStarted", "in time"}));
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
    QTEST(int(activated.count()), "activations");
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

void TestQEditableTreeView::aViewWithoutModelAcceptsEveryKey()
{
    QEditableTreeView view;
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    int emitted = 0;
    connect(&view, &QEditableTreeView::ctrlReturnClicked, this,
            [&emitted](const QModelIndex &index) { emitted += index.isValid() ? 100 : 1; });
    connect(&view, &QEditableTreeView::ctrlDelClicked, this,
            [&emitted](const QModelIndex &index) { emitted += index.isValid() ? 100 : 1; });
    connect(&view, &QEditableTreeView::delClicked, this,
            [&emitted](int row, int column) { emitted += row == -1 && column == -1 ? 1 : 100; });
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2, Qt::Key_Insert, Qt::Key_Delete}) {
        QTest::keyClick(&view, key);
        QTest::keyClick(&view, key, Qt::ControlModifier);
    }
    QCOMPARE(emitted, 5);
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

void TestQEditableTreeView::aRemovedPressedItemIsForgotten()
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

void TestQEditableTreeView::everySelectionChangeIsReported()
{
    List list;
    QStringList changes;
    connect(&list.view, &QEditableTreeView::updateSelection, this,
            [&](const QItemSelection &selected, const QItemSelection &deselected) {
                QString line = list.view.selectionModel()->hasSelection() ? "some:" : "none:";
                for (const QModelIndex &index : selected.indexes())
                    line += QString(" +%1").arg(index.row());
                for (const QModelIndex &index : deselected.indexes())
                    line += QString(" -%1").arg(index.row());
                changes.append(line);
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
    QCOMPARE(changes, QStringList({"some: +0", "some: +1", "some: +2 -0 -1", "none: -2"}));
}

GARAGE_TEST(TestQEditableTreeView)
#include "tst_qeditabletreeview.moc"
