#include "settings/garagesettingsform.h"
#include "support/databaselock.h"
#include "support/garagetest.h"
#include "support/garagewindow.h"
#include "support/typing.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QHeaderView>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMetaMethod>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <cstdio>

/// The settings page on a real file, used with mouse and keyboard; what it wrote is read by another
/// connection.
class TestGarageSettingsForm : public GarageTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void theSignalAndTheNamedSlotsComeFirst();
    void showsOperationsAndLimitsOfTheFile();
    void eachModelHasOneRowWhateverItsName();
    void aFileThatCannotBeReadGivesEmptyTables();
    void aFileThatAppearsLaterIsRead();
    void aFileThatAppearsLaterIsReadBesideANewRow();
    void anotherFileInItsPlaceIsShownAndNotWrittenTo_data();
    void anotherFileInItsPlaceIsShownAndNotWrittenTo();

    void anAddedOperationIsStoredWhenItsNameIsTyped();
    void twoOperationsCanBeAddedInARow();
    void anOperationLeftWithoutNameIsNotStored();
    void aNewIdGoesToTheRowThatWasNamed();
    void anEmptyNameThatWasNotEditedIsNotStored();
    void anInsertThatFailsLeavesTheRowUnstored();
    void renamingKeepsIdAndLimits();
    void anOperationCanBeRenamedToNothing();
    void escapeLeavesTheNameAsItWas();
    void contextMenuOffersBothActions();

    void removingAsksFirst_data();
    void removingAsksFirst();
    void removingWithoutACurrentRowDoesNothing();
    void removingTakesTheChosenOfTwoUnstoredRows();
    void removingWhileTheNameIsTypedRemovesWhatWasStored();

    void onlyOperationCellsAskForLimits_data();
    void onlyOperationCellsAskForLimits();
    void limitsAreStoredAsTyped_data();
    void limitsAreStoredAsTyped();
    void cancellingChangesNothing();
    void namesOfAnyKindSurvive_data();
    void namesOfAnyKindSurvive();

    void newModelsArePickedUpWithoutLosingSelectionOrEditor();
    void limitsGoToTheCellThatWasClickedWhateverHappensMeanwhile();
    void theReglamentViewSurvivesLosingRowsAndColumns();
    void draggedWidthsSurviveAReload();
    void readersOfTheLimitsAreToldOfARename();

    void thePageMayDieWhileADialogIsOpen_data();
    void thePageMayDieWhileADialogIsOpen();
    void thePageMayDieWhileAnEditorIsOpen();
    void eachWriteWaitsForTheOtherConnection_data();
    void eachWriteWaitsForTheOtherConnection();

    void fillsTheHostsDialog();
    void itsTablesAreFlatLists();
    void itsLayoutsAreAsAgreed();

private:
    template<class Widget = QWidget> Widget *find(const char *name) const;
    QAbstractItemModel *operations() const { return find<QTreeView>("tvServiceOperations")->model(); }
    QAbstractItemModel *reglament() const { return find<QTreeView>("tvServiceReglament")->model(); }
    QStringList titles() const;
    QLineEdit *editor() const;
    void open();
    void select(int row) const;
    void trigger(const char *action) const;
    void type(const QString &name) const;
    void startRenaming(int row) const;
    void doubleClick(const char *view, const QModelIndex &cell) const;
    QJsonArray takeOnlyAnnouncement();

    std::unique_ptr<TestDatabase> m_database;
    std::unique_ptr<QWidget> m_host;
    QPointer<GarageSettingsForm> m_form;
    std::unique_ptr<QSignalSpy> m_events;
};

namespace {

const QString selectOperations = "SELECT * FROM service_operations ORDER BY id";
const QString selectLimits = "SELECT * FROM service_reglament ORDER BY model,operation_id";

QJsonArray opsList(const QList<QPair<int, QString>> &operations)
{
    QJsonArray list;
    for (const auto &operation : operations)
        list.append(QJsonObject {{"id", operation.first}, {"opName", operation.second}});
    return list;
}

void press(QDialog &dialog, QDialogButtonBox::StandardButton which)
{
    QTest::mouseClick(dialog.findChild<QDialogButtonBox *>()->button(which), Qt::LeftButton);
}

void enter(const QDialog &dialog, const char *field, const QString &text)
{
    auto *edit = dialog.findChild<QLineEdit *>(QLatin1String(field));
    QTest::keySequence(edit, QKeySequence::SelectAll);
    QTest::keyClick(edit, Qt::Key_Delete);
    typeText(edit, text);
}

} // namespace

template<class Widget> Widget *TestGarageSettingsForm::find(const char *name) const
{
    auto *found = m_form->findChild<Widget *>(QLatin1String(name));
    if (!found)
        qFatal("The page has no %s", name);
    return found;
}

void TestGarageSettingsForm::init()
{
    GarageTest::init();
    m_database = createDatabase();
    m_database->addCar(1, "1", "SODI");
    m_database->addCar(2, "2", "Rimo");
    m_database->addCar(3, "3", "SODI");
    m_database->addOperation(2, "Масло");
    m_database->addOperation(5, "Цепь");
    m_database->addLimit("SODI", 2, 5400, 10, 0);
}

void TestGarageSettingsForm::cleanup()
{
    QVERIFY(allDialogsAnswered());
    m_events.reset();
    m_host.reset();
    m_database.reset();
    GarageTest::cleanup();
}

/// Opens the page inside a window of the host.
void TestGarageSettingsForm::open()
{
    m_host = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(m_host.get());
    m_form = new GarageSettingsForm;
    layout->addWidget(m_form);
    m_events = std::make_unique<QSignalSpy>(m_form.data(), &GarageSettingsForm::pluginSignal);
    for (QAbstractItemModel *model : {operations(), reglament()})
        new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::Fatal, m_form);
    m_host->show();
    QVERIFY(QTest::qWaitForWindowActive(m_host.get()));
}

QStringList TestGarageSettingsForm::titles() const
{
    QStringList texts;
    for (int column = 2; column < reglament()->columnCount(); ++column)
        texts.append(reglament()->headerData(column, Qt::Horizontal).toString());
    return texts;
}

QLineEdit *TestGarageSettingsForm::editor() const
{
    return find<QTreeView>("tvServiceOperations")->viewport()->findChild<QLineEdit *>();
}

void TestGarageSettingsForm::select(int row) const
{
    auto *view = find<QTreeView>("tvServiceOperations");
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                      view->visualRect(view->model()->index(row, 1)).center());
    QCOMPARE(view->currentIndex().row(), row);
}

void TestGarageSettingsForm::trigger(const char *action) const
{
    find<QAction>(action)->trigger();
}

/// Into the editor that is open, in place of what is there.
void TestGarageSettingsForm::type(const QString &name) const
{
    QVERIFY(editor());
    QVERIFY(editor()->hasFocus());
    QTest::keySequence(editor(), QKeySequence::SelectAll);
    QTest::keyClick(editor(), Qt::Key_Delete);
    typeText(editor(), name);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_VERIFY(!editor());
}

void TestGarageSettingsForm::startRenaming(int row) const
{
    select(row);
    QTest::keyClick(find<QTreeView>("tvServiceOperations"), Qt::Key_F2);
    QVERIFY(editor());
}

void TestGarageSettingsForm::doubleClick(const char *viewName, const QModelIndex &cell) const
{
    auto *view = find<QTreeView>(viewName);
    view->scrollTo(cell);
    const QPoint at = view->visualRect(cell).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, at);
}

QJsonArray TestGarageSettingsForm::takeOnlyAnnouncement()
{
    if (m_events->count() != 1)
        return {m_events->count()};
    const QVariantList event = m_events->takeFirst();
    const QJsonObject data = event.at(2).toJsonObject();
    if (event.at(0) != "garage_settings" || event.at(1) != "service_ops_changed"
        || data.keys() != QStringList("opsList"))
        return {event.at(0).toString(), event.at(1).toString(), data};
    return data.value("opsList").toArray();
}

void TestGarageSettingsForm::theSignalAndTheNamedSlotsComeFirst()
{
    const QMetaObject &meta = GarageSettingsForm::staticMetaObject;
    const QList<QByteArray> expected {
        "pluginSignal(QString,QString,QJsonObject)", "on_tvServiceReglament_doubleClicked(QModelIndex)",
        "on_actionAddOperation_triggered()", "on_actionRemoveOperation_triggered()"};
    QCOMPARE(meta.methodCount() - meta.methodOffset(), expected.size());
    for (int i = 0; i < expected.size(); ++i)
        QCOMPARE(meta.method(meta.methodOffset() + i).methodSignature(), expected.at(i));
}

void TestGarageSettingsForm::showsOperationsAndLimitsOfTheFile()
{
    open();
    QCOMPARE(GarageWindow::texts(*operations()), QStringList({"1|Масло", "2|Цепь"}));
    QCOMPARE(GarageWindow::texts(*reglament()), QStringList({"1|SODI|1.5 ч. 10 заезд. 0 кр.|", "2|Rimo||"}));
    QCOMPARE(titles(), QStringList({"Масло", "Цепь"}));
    QCOMPARE(m_events->count(), 0);
}

void TestGarageSettingsForm::eachModelHasOneRowWhateverItsName()
{
    m_database->exec("INSERT INTO cars (id,num,name) VALUES (4,'4','sodi'),(5,'5',NULL),(6,'6','')");
    m_database->addLimit("Gone", 2, 1, 1, 1);
    m_database->addLimit("Rimo", 77, 1, 1, 1);
    open();
    QCOMPARE(reglament()->rowCount(), 5);
    QCOMPARE(reglament()->columnCount(), 4);
    QCOMPARE(reglament()->index(1, 1).data().toString(), "Rimo");
    QCOMPARE(reglament()->index(1, 2).data().toString() + reglament()->index(1, 3).data().toString(),
             QString());
}

void TestGarageSettingsForm::aFileThatCannotBeReadGivesEmptyTables()
{
    m_database->exec("DROP TABLE service_operations");
    m_database->exec("DROP TABLE service_reglament");
    open();
    QCOMPARE(operations()->rowCount(), 0);
    QCOMPARE(reglament()->rowCount(), 2);
    QCOMPARE(reglament()->columnCount(), 2);
}

void TestGarageSettingsForm::aFileThatAppearsLaterIsRead()
{
    const QString folder = QFileInfo(home().databasePath()).path();
    const QString elsewhere = folder + "-elsewhere";
    m_database.reset();
    QVERIFY(QDir().rename(folder, elsewhere));
    open();
    QCOMPARE(reglament()->rowCount() + operations()->rowCount(), 0);

    QVERIFY(QDir().rename(elsewhere, folder));
    m_form->reloadReglamentModel();
    QCOMPARE(operations()->rowCount(), 2);
    QCOMPARE(GarageWindow::texts(*reglament()).first(), "1|SODI|1.5 ч. 10 заезд. 0 кр.|");
}

void TestGarageSettingsForm::aFileThatAppearsLaterIsReadBesideANewRow()
{
    const QString folder = QFileInfo(home().databasePath()).path();
    const QString elsewhere = folder + "-elsewhere";
    QVERIFY(QDir().rename(folder, elsewhere));
    open();
    trigger("actionAddOperation");
    QVERIFY(QDir().rename(elsewhere, folder));

    type("Шины");
    QCOMPARE(takeOnlyAnnouncement(), opsList({{2, "Масло"}, {5, "Цепь"}, {6, "Шины"}}));
    QCOMPARE(reglament()->columnCount(), 5);
}

void TestGarageSettingsForm::anotherFileInItsPlaceIsShownAndNotWrittenTo_data()
{
    QTest::addColumn<QString>("action");
    QTest::newRow("renaming") << "rename";
    QTest::newRow("removing") << "remove";
    QTest::newRow("limits") << "limits";
}

void TestGarageSettingsForm::anotherFileInItsPlaceIsShownAndNotWrittenTo()
{
    QFETCH(QString, action);
    const QString path = home().databasePath();
    const TestDatabase backup(path + ".backup");
    backup.addCar(1, "1", "SODI");
    backup.addOperation(2, "Тормоза");
    const auto restore = [&path] {
        QCOMPARE(std::rename(qPrintable(path + ".backup"), qPrintable(path)), 0);
    };

    open();
    if (action == "rename") {
        startRenaming(0);
        restore();
        type("Шины");
    } else {
        onNextDialog([&](QDialog &dialog) {
            restore();
            press(dialog, action == "remove" ? QDialogButtonBox::Yes : QDialogButtonBox::Ok);
        });
        if (action == "remove") {
            select(0);
            trigger("actionRemoveOperation");
        } else {
            doubleClick("tvServiceReglament", reglament()->index(0, 2));
        }
    }
    QCOMPARE(operations()->index(0, 1).data().toString(), "Тормоза");
    QCOMPARE(operations()->rowCount(), 1);
    QCOMPARE(backup.rows(selectOperations), QStringList("2|Тормоза"));
    QCOMPARE(backup.rows(selectLimits), QStringList());
}

void TestGarageSettingsForm::anAddedOperationIsStoredWhenItsNameIsTyped()
{
    open();
    trigger("actionAddOperation");
    QCOMPARE(find<QTreeView>("tvServiceOperations")->currentIndex(), operations()->index(2, 1));
    QCOMPARE(m_database->rows(selectOperations).size(), 2);
    QCOMPARE(m_events->count(), 0);

    type("Шины");
    QCOMPARE(m_database->rows(selectOperations).mid(2), QStringList("6|Шины"));
    QCOMPARE(takeOnlyAnnouncement(), opsList({{2, "Масло"}, {5, "Цепь"}, {6, "Шины"}}));
    QCOMPARE(titles().last(), "Шины");
    QCOMPARE(find<QTreeView>("tvServiceReglament")->columnWidth(4), 120);

    startRenaming(2);
    type("Колёса");
    QCOMPARE(m_database->rows(selectOperations).mid(2), QStringList("6|Колёса"));
}

void TestGarageSettingsForm::twoOperationsCanBeAddedInARow()
{
    open();
    trigger("actionAddOperation");
    typeText(editor(), "Шины");
    trigger("actionAddOperation"); // stores what was typed
    QCOMPARE(operations()->rowCount(), 4);
    QCOMPARE(takeOnlyAnnouncement(), opsList({{2, "Масло"}, {5, "Цепь"}, {6, "Шины"}, {-1, QString()}}));
    QTRY_COMPARE(m_form->findChildren<QLineEdit *>().size(), 1);
    type("Тормоза");
    QCOMPARE(m_database->rows(selectOperations).mid(2), QStringList({"6|Шины", "7|Тормоза"}));
    QCOMPARE(titles().mid(2), QStringList({"Шины", "Тормоза"}));
}

void TestGarageSettingsForm::anOperationLeftWithoutNameIsNotStored()
{
    open();
    trigger("actionAddOperation");
    QTest::mouseClick(find<QTreeView>("tvServiceReglament")->viewport(), Qt::LeftButton);
    find<QTreeView>("tvServiceReglament")->setFocus();
    QTRY_VERIFY(!editor());
    QCOMPARE(operations()->rowCount(), 3);
    QCOMPARE(reglament()->columnCount(), 4);
    QCOMPARE(m_database->rows(selectOperations).size(), 2);
    QCOMPARE(m_events->count(), 0);
}

void TestGarageSettingsForm::aNewIdGoesToTheRowThatWasNamed()
{
    open();
    trigger("actionAddOperation");
    QTest::keyClick(editor(), Qt::Key_Escape);
    QTRY_VERIFY(!editor());
    trigger("actionAddOperation");
    type("Шины");
    QCOMPARE(takeOnlyAnnouncement(), opsList({{2, "Масло"}, {5, "Цепь"}, {6, "Шины"}, {-1, QString()}}));
    QCOMPARE(m_database->rows(selectOperations).mid(2), QStringList("6|Шины"));
}

void TestGarageSettingsForm::anEmptyNameThatWasNotEditedIsNotStored()
{
    aNewIdGoesToTheRowThatWasNamed();
    startRenaming(3);
    find<QTreeView>("tvServiceReglament")->setFocus();
    QTRY_VERIFY(!editor());
    QCOMPARE(m_database->rows(selectOperations).mid(2), QStringList("6|Шины"));
    QCOMPARE(m_events->count(), 0);
}

void TestGarageSettingsForm::anInsertThatFailsLeavesTheRowUnstored()
{
    m_database->exec("CREATE TRIGGER fault BEFORE INSERT ON service_operations "
                     "BEGIN SELECT RAISE(ABORT, 'injected'); END");
    open();
    trigger("actionAddOperation");
    type("Шины");
    QCOMPARE(takeOnlyAnnouncement(), opsList({{2, "Масло"}, {5, "Цепь"}, {-1, "Шины"}}));
    QCOMPARE(reglament()->columnCount(), 4);

    m_database->exec("DROP TRIGGER fault"); // also: no transaction was left open
    startRenaming(2);
    type("Шины");
    QCOMPARE(m_database->rows(selectOperations).mid(2), QStringList("6|Шины"));
}

void TestGarageSettingsForm::renamingKeepsIdAndLimits()
{
    open();
    doubleClick("tvServiceOperations", operations()->index(0, 1));
    QVERIFY(editor());
    QCOMPARE(editor()->text(), "Масло");
    type("Масло мотора");
    QCOMPARE(m_database->rows(selectOperations), QStringList({"2|Масло мотора", "5|Цепь"}));
    QCOMPARE(m_database->rows(selectLimits), QStringList("SODI|2|5400|10|0"));
    QCOMPARE(takeOnlyAnnouncement(), opsList({{2, "Масло мотора"}, {5, "Цепь"}}));
    QCOMPARE(titles(), QStringList({"Масло мотора", "Цепь"}));
    QCOMPARE(reglament()->index(0, 2).data().toString(), "1.5 ч. 10 заезд. 0 кр.");
}

void TestGarageSettingsForm::anOperationCanBeRenamedToNothing()
{
    open();
    startRenaming(0);
    type(QString());
    QCOMPARE(m_database->rows(selectOperations), QStringList({"2|", "5|Цепь"}));
    QCOMPARE(takeOnlyAnnouncement(), opsList({{2, QString()}, {5, "Цепь"}}));
}

void TestGarageSettingsForm::escapeLeavesTheNameAsItWas()
{
    open();
    startRenaming(0);
    typeText(editor(), "x");
    QTest::keyClick(editor(), Qt::Key_Escape);
    QTRY_VERIFY(!editor());
    QCOMPARE(GarageWindow::texts(*operations()).first(), "1|Масло");
    QCOMPARE(m_database->rows(selectOperations).first(), "2|Масло");
    QCOMPARE(m_events->count(), 0);
}

void TestGarageSettingsForm::contextMenuOffersBothActions()
{
    open();
    auto *view = find<QTreeView>("tvServiceOperations");
    QStringList offered;
    QTimer answer;
    connect(&answer, &QTimer::timeout, this, [&] {
        QWidget *menu = QApplication::activePopupWidget();
        // A menu that is gone before it was activated would take the focus from the editor that it opens.
        if (!menu || QGuiApplication::focusWindow() != menu->windowHandle())
            return;
        answer.stop();
        for (const QAction *action : menu->actions())
            offered.append(action->text());
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    answer.start(1);
    const QPoint at(20, 20);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, view->viewport()->mapToGlobal(at));
    QApplication::sendEvent(view->viewport(), &event);
    QCOMPARE(offered, QStringList({"Добавить", "Удалить"}));
    QTRY_COMPARE(operations()->rowCount(), 3);
    type("Шины");
    QCOMPARE(m_database->rows(selectOperations).size(), 3);
}

void TestGarageSettingsForm::removingAsksFirst_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("removed");
    QTest::newRow("yes") << int(QMessageBox::Yes) << true;
    QTest::newRow("no") << int(QMessageBox::No) << false;
    QTest::newRow("escape") << int(QMessageBox::NoButton) << false;
}

void TestGarageSettingsForm::removingAsksFirst()
{
    QFETCH(int, answer);
    QFETCH(bool, removed);
    open();
    select(0);
    onNextDialog([answer](QDialog &dialog) {
        auto *question = qobject_cast<QMessageBox *>(&dialog);
        QVERIFY(question);
        QCOMPARE(question->windowTitle(), "Подтверждение");
        QCOMPARE(question->text(), "Точно удалить?");
        QCOMPARE(question->standardButtons(), QMessageBox::Yes | QMessageBox::No);
        if (answer == QMessageBox::NoButton)
            QTest::keyClick(question, Qt::Key_Escape);
        else
            QTest::mouseClick(question->button(QMessageBox::StandardButton(answer)), Qt::LeftButton);
    });
    trigger("actionRemoveOperation");
    QCOMPARE(m_database->rows(selectOperations).size(), removed ? 1 : 2);
    QCOMPARE(operations()->rowCount(), removed ? 1 : 2);
    if (removed)
        QCOMPARE(takeOnlyAnnouncement(), opsList({{5, "Цепь"}}));
    QCOMPARE(m_events->count(), 0);
    // Its column stays until the schedule is read anew, its limits for good.
    QCOMPARE(titles(), QStringList({"Масло", "Цепь"}));
    m_form->reloadReglamentModel();
    QCOMPARE(titles().size(), removed ? 1 : 2);
    QCOMPARE(m_database->rows(selectLimits), QStringList("SODI|2|5400|10|0"));
}

void TestGarageSettingsForm::removingWithoutACurrentRowDoesNothing()
{
    open();
    find<QTreeView>("tvServiceOperations")->setCurrentIndex({}); // the focus chose the first
    trigger("actionRemoveOperation");
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(operations()->rowCount(), 2);
    QCOMPARE(m_events->count(), 0);
}

void TestGarageSettingsForm::removingTakesTheChosenOfTwoUnstoredRows()
{
    m_database->exec("CREATE TRIGGER fault BEFORE INSERT ON service_operations "
                     "BEGIN SELECT RAISE(ABORT, 'injected'); END");
    open();
    for (const char *name : {"Шины", "Тормоза"}) {
        trigger("actionAddOperation");
        type(name);
    }
    m_events->clear();
    select(3);
    onNextDialog([](QDialog &dialog) { press(dialog, QDialogButtonBox::Yes); });
    trigger("actionRemoveOperation");
    QCOMPARE(takeOnlyAnnouncement(), opsList({{2, "Масло"}, {5, "Цепь"}, {-1, "Шины"}}));
    QCOMPARE(m_database->rows(selectOperations).size(), 2);
}

void TestGarageSettingsForm::removingWhileTheNameIsTypedRemovesWhatWasStored()
{
    open();
    trigger("actionAddOperation");
    typeText(editor(), "Шины");
    onNextDialog([](QDialog &dialog) { press(dialog, QDialogButtonBox::Yes); });
    trigger("actionRemoveOperation");
    QCOMPARE(m_database->rows(selectOperations), QStringList({"2|Масло", "5|Цепь"}));
    QCOMPARE(operations()->rowCount(), 2);
    QTRY_VERIFY(!editor());
}

void TestGarageSettingsForm::onlyOperationCellsAskForLimits_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<QStringList>("shown"); // model, operation, limits
    QTest::newRow("number") << 0 << 0 << QStringList();
    QTest::newRow("model") << 0 << 1 << QStringList();
    QTest::newRow("with limits") << 0 << 2 << QStringList({"SODI", "Масло", "1.5", "10", QString()});
    QTest::newRow("without limits") << 1 << 3
                                    << QStringList({"Rimo", "Цепь", QString(), QString(), QString()});
}

void TestGarageSettingsForm::onlyOperationCellsAskForLimits()
{
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(QStringList, shown);
    open();
    QStringList seen;
    if (!shown.isEmpty()) {
        onNextDialog([&seen](QDialog &dialog) {
            seen.append(dialog.findChild<QLabel *>("lModelName")->text());
            seen.append(dialog.findChild<QGroupBox *>("gbParameterName")->title());
            for (const char *field : {"leTime", "leRunsCount", "leLapsCount"})
                seen.append(dialog.findChild<QLineEdit *>(QLatin1String(field))->text());
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
    }
    doubleClick("tvServiceReglament", reglament()->index(row, column));
    QCOMPARE(seen, shown);
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(QMetaObject::invokeMethod(m_form, "on_tvServiceReglament_doubleClicked",
                                      Q_ARG(QModelIndex, QModelIndex())));
}

void TestGarageSettingsForm::limitsAreStoredAsTyped_data()
{
    QTest::addColumn<QStringList>("typed");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("shown");
    const auto typed = [](const char *time, const char *runs, const char *laps) {
        return QStringList({QString::fromUtf8(time), QString::fromUtf8(runs), QString::fromUtf8(laps)});
    };
    QTest::newRow("comma") << typed("1,5", "3", "4") << "Rimo|5|5400|3|4"
                           << "1.5 ч. 3 заезд. 4 кр.";
    QTest::newRow("point") << typed("1.5", "3", "") << "Rimo|5|5400|3|0"
                           << "1.5 ч. 3 заезд. 0 кр.";
    QTest::newRow("empty") << typed("", "", "") << "Rimo|5|0|0|0"
                           << "";
    QTest::newRow("letters") << typed("час", "три", "4a") << "Rimo|5|0|0|0"
                             << "";
    QTest::newRow("negative") << typed("-1", "-2", "-3") << "Rimo|5|-3600|-2|-3"
                              << "-1.0 ч. -2 заезд. -3 кр.";
    QTest::newRow("a second") << typed("0.0003", "", "") << "Rimo|5|1|0|0"
                              << "0.0 ч. 0 заезд. 0 кр.";
    QTest::newRow("very large") << typed("9e99", "2147483647", "2147483648")
                                << "Rimo|5|2147483647|2147483647|0"
                                << "596523.2 ч. 2147483647 заезд. 0 кр.";
}

void TestGarageSettingsForm::limitsAreStoredAsTyped()
{
    QFETCH(QStringList, typed);
    open();
    QSignalSpy changed(reglament(), &QAbstractItemModel::dataChanged);
    const QModelIndex cell = reglament()->index(1, 3);
    onNextDialog([&typed](QDialog &dialog) {
        enter(dialog, "leTime", typed.at(0));
        enter(dialog, "leRunsCount", typed.at(1));
        enter(dialog, "leLapsCount", typed.at(2));
        press(dialog, QDialogButtonBox::Ok);
    });
    doubleClick("tvServiceReglament", cell);
    QTEST(m_database->rows(selectLimits).first(), "stored");
    QCOMPARE(m_database->rows(selectLimits).size(), 2);
    QTEST(cell.data().toString(), "shown");
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toModelIndex(), cell);
    QCOMPARE(changed.at(0).at(1).toModelIndex(), cell);
    QCOMPARE(m_events->count(), 0);
}

void TestGarageSettingsForm::cancellingChangesNothing()
{
    open();
    QSignalSpy changed(reglament(), &QAbstractItemModel::dataChanged);
    onNextDialog([](QDialog &dialog) {
        enter(dialog, "leTime", "9");
        press(dialog, QDialogButtonBox::Cancel);
    });
    doubleClick("tvServiceReglament", reglament()->index(0, 2));
    QCOMPARE(m_database->rows(selectLimits), QStringList("SODI|2|5400|10|0"));
    QCOMPARE(reglament()->index(0, 2).data().toString(), "1.5 ч. 10 заезд. 0 кр.");
    QCOMPARE(changed.count(), 0);
}

void TestGarageSettingsForm::namesOfAnyKindSurvive_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("quotes") << "\"Масло\" 'и' `фильтр`; --";
    QTest::newRow("percent") << "100% %1 %2 %s %d %n %L1";
    QTest::newRow("markup and ampersand") << "<b>Масло</b> & фильтр";
    QTest::newRow("emoji") << "🏎 Масло 🔧";
    QTest::newRow("line feeds") << "Масло\nи\nфильтр";
    QTest::newRow("a thousand lines") << QString("Масло\n").repeated(1000);
    QTest::newRow("10,000 characters") << QString(10000, 'x');
}

void TestGarageSettingsForm::namesOfAnyKindSurvive()
{
    QFETCH(QString, name);
    m_database->addCar(9, "9", name);
    m_database->addOperation(9, name);
    open();
    QCOMPARE(titles().last(), name);

    // What another program wrote is not changed by the editor, and what a person pastes is stored as it is.
    startRenaming(2);
    QCOMPARE(editor()->text(), name);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_VERIFY(!editor());
    QCOMPARE(m_events->count(), 0);
    startRenaming(0);
    editor()->selectAll();
    editor()->insert(name);
    QTest::keyClick(editor(), Qt::Key_Return);
    QTRY_VERIFY(!editor());
    QCOMPARE(takeOnlyAnnouncement(), opsList({{2, name}, {5, "Цепь"}, {9, name}}));
    QCOMPARE(m_database->value("SELECT operation_name FROM service_operations WHERE id=2"), name);

    QStringList shown;
    onNextDialog([&shown](QDialog &dialog) {
        shown.append(dialog.findChild<QLabel *>("lModelName")->text());
        shown.append(dialog.findChild<QGroupBox *>("gbParameterName")->title());
        enter(dialog, "leRunsCount", "7");
        press(dialog, QDialogButtonBox::Ok);
    });
    doubleClick("tvServiceReglament", reglament()->index(2, 4));
    QCOMPARE(shown, QStringList({name, QString(name).replace('\n', ' ')}));
    QCOMPARE(m_database->value("SELECT runs_limit FROM service_reglament WHERE model=?", {name}), 7);
    auto *view = find<QTreeView>("tvServiceReglament");
    QVERIFY(view->header()->height() < view->height() / 2);
}

void TestGarageSettingsForm::newModelsArePickedUpWithoutLosingSelectionOrEditor()
{
    open();
    auto *view = find<QTreeView>("tvServiceReglament");
    view->setCurrentIndex(reglament()->index(1, 3));
    startRenaming(1);
    typeText(editor(), "Цепь и");
    const QPointer<QLineEdit> open = editor();

    m_database->exec("DELETE FROM cars WHERE name='SODI'");
    m_database->addCar(7, "7", "Birel");
    m_form->reloadReglamentModel();
    QCOMPARE(GarageWindow::texts(*reglament()), QStringList({"1|Rimo||", "2|Birel||"}));
    QCOMPARE(view->currentIndex(), reglament()->index(0, 3));
    QCOMPARE(view->selectionModel()->selectedIndexes(), QModelIndexList({reglament()->index(0, 3)}));
    QVERIFY(open);
    QCOMPARE(open->text(), "Цепь и");
    typeText(open, " звезда");
    QTest::keyClick(open, Qt::Key_Return);
    QTRY_VERIFY(!open);
    QCOMPARE(m_database->rows(selectOperations).last(), "5|Цепь и звезда");
}

void TestGarageSettingsForm::limitsGoToTheCellThatWasClickedWhateverHappensMeanwhile()
{
    open();
    const auto enterRuns = [](QDialog &dialog, const QString &runs) {
        enter(dialog, "leRunsCount", runs);
        press(dialog, QDialogButtonBox::Ok);
    };
    onNextDialog([&](QDialog &dialog) {
        m_database->exec("DELETE FROM cars WHERE name='SODI'");
        m_database->addCar(7, "7", "SODI");
        m_form->reloadReglamentModel();
        enterRuns(dialog, "44");
    });
    doubleClick("tvServiceReglament", reglament()->index(0, 2));
    QCOMPARE(m_database->rows(selectLimits), QStringList("SODI|2|5400|44|0"));
    QCOMPARE(GarageWindow::texts(*reglament()), QStringList({"1|Rimo||", "2|SODI|1.5 ч. 44 заезд. 0 кр.|"}));

    onNextDialog([&](QDialog &dialog) {
        m_database->exec("DELETE FROM cars");
        m_form->reloadReglamentModel();
        enterRuns(dialog, "55");
    });
    doubleClick("tvServiceReglament", reglament()->index(1, 2));
    QCOMPARE(m_database->rows(selectLimits), QStringList("SODI|2|5400|55|0"));
    QCOMPARE(reglament()->rowCount(), 0);
}

void TestGarageSettingsForm::theReglamentViewSurvivesLosingRowsAndColumns()
{
    open();
    auto *view = find<QTreeView>("tvServiceReglament");
    const QModelIndex last = reglament()->index(1, 3);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(last).center());
    QCOMPARE(view->currentIndex(), last);
    select(1);
    onNextDialog([](QDialog &dialog) { press(dialog, QDialogButtonBox::Yes); });
    trigger("actionRemoveOperation");

    m_database->exec("DELETE FROM cars WHERE name='Rimo'");
    m_form->reloadReglamentModel();
    QCOMPARE(reglament()->rowCount(), 1);
    QCOMPARE(reglament()->columnCount(), 3);
    QVERIFY(!view->currentIndex().isValid());
    for (Qt::Key key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_End, Qt::Key_Up, Qt::Key_Home})
        QTest::keyClick(view, key);
    QVERIFY(!view->grab().isNull());

    m_database->exec("DELETE FROM cars");
    m_form->reloadReglamentModel();
    QTest::keyClick(view, Qt::Key_Down);
    QVERIFY(!view->grab().isNull());
}

void TestGarageSettingsForm::draggedWidthsSurviveAReload()
{
    open();
    auto *view = find<QTreeView>("tvServiceReglament");
    QCOMPARE(view->columnWidth(0), 50);
    QCOMPARE(view->columnWidth(1), 80);
    QCOMPARE(view->columnWidth(2), 120);
    QCOMPARE(find<QTreeView>("tvServiceOperations")->columnWidth(0), 60);
    view->setColumnWidth(1, 155);
    view->setColumnWidth(3, 95);
    trigger("actionAddOperation");
    type("Шины");
    QCOMPARE(view->columnWidth(1), 155);
    QCOMPARE(view->columnWidth(2), 120);
    QCOMPARE(view->columnWidth(3), 95);
    QCOMPARE(view->columnWidth(4), 120);
}

void TestGarageSettingsForm::readersOfTheLimitsAreToldOfARename()
{
    open();
    QSignalSpy replaced(&m_form->reglamentModel(), &QAbstractItemModel::layoutChanged);
    startRenaming(0);
    type("Масло мотора");
    QCOMPARE(replaced.count(), 1);
    QCOMPARE(m_form->reglamentModel().findModel("SODI")->limits.value(2).opName, "Масло мотора");
    QCOMPARE(m_form->reglamentModel().limits("SODI", 2).seconds, 5400);
}

void TestGarageSettingsForm::thePageMayDieWhileADialogIsOpen_data()
{
    QTest::addColumn<bool>("question");
    QTest::newRow("question") << true;
    QTest::newRow("limits") << false;
}

void TestGarageSettingsForm::thePageMayDieWhileADialogIsOpen()
{
    QFETCH(bool, question);
    open();
    onNextDialog([this](QDialog &) { m_host.reset(); });
    if (question) {
        select(0);
        trigger("actionRemoveOperation");
    } else {
        QVERIFY(QMetaObject::invokeMethod(m_form, "on_tvServiceReglament_doubleClicked",
                                          Q_ARG(QModelIndex, reglament()->index(0, 2))));
    }
    QVERIFY(!m_form);
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(m_database->rows(selectOperations).size(), 2);
    QCOMPARE(m_database->rows(selectLimits), QStringList("SODI|2|5400|10|0"));
}

void TestGarageSettingsForm::thePageMayDieWhileAnEditorIsOpen()
{
    open();
    startRenaming(0);
    typeText(editor(), "x");
    delete m_form;
    QCOMPARE(QSqlDatabase::connectionNames().size(), 1);
}

void TestGarageSettingsForm::eachWriteWaitsForTheOtherConnection_data()
{
    QTest::addColumn<QString>("write");
    for (const char *write : {"add", "rename", "remove", "limits"})
        QTest::newRow(write) << QString::fromLatin1(write);
}

void TestGarageSettingsForm::eachWriteWaitsForTheOtherConnection()
{
    QFETCH(QString, write);
    constexpr int heldMs = 1000;
    open();
    std::unique_ptr<DatabaseLock> lock;
    QElapsedTimer clock;
    const auto hold = [&] {
        lock = std::make_unique<DatabaseLock>(home().databasePath(), DatabaseLock::Exclusive, heldMs);
        clock.start();
    };
    QStringList stored({"2|Масло", "5|Цепь"});
    QStringList limits("SODI|2|5400|10|0");
    if (write == "add") {
        trigger("actionAddOperation");
        hold();
        type("Шины");
        stored.append("6|Шины");
    } else if (write == "rename") {
        startRenaming(1);
        hold();
        type("Шины");
        stored[1] = "5|Шины";
    } else {
        onNextDialog([&](QDialog &dialog) {
            hold();
            press(dialog, write == "limits" ? QDialogButtonBox::Ok : QDialogButtonBox::Yes);
        });
        if (write == "remove") {
            select(1);
            trigger("actionRemoveOperation");
            stored.removeLast();
        } else {
            doubleClick("tvServiceReglament", reglament()->index(1, 3));
            limits.prepend("Rimo|5|0|0|0");
        }
    }
    QVERIFY(clock.elapsed() >= heldMs - 50);
    lock.reset();
    QCOMPARE(m_database->rows(selectOperations), stored);
    QCOMPARE(m_database->rows(selectLimits), limits);
    QCOMPARE(m_events->count(), write == "limits" ? 0 : 1);
    QVERIFY(m_database->tryExec("BEGIN EXCLUSIVE"));
    QVERIFY(m_database->tryExec("COMMIT"));
}

void TestGarageSettingsForm::fillsTheHostsDialog()
{
    open();
    QCOMPARE(m_form->windowTitle(), "Form");
    QCOMPARE(m_form->sizeHint(), QSize(465, 425));
    m_host->resize(m_host->sizeHint());
    QCOMPARE(m_form->size(), QSize(465, 425));
    QCOMPARE(find<QGroupBox>("groupBox_2")->title(), "Сервисные операции");
    QCOMPARE(find<QGroupBox>("groupBox")->title(), "Регламент обслуживания");
    QVERIFY(find("groupBox")->height() > find("groupBox_2")->height());
    m_host->resize(900, 700);
    QTRY_VERIFY(find<QTreeView>("tvServiceReglament")->width() > 850);
    QVERIFY(!find<QTreeView>("tvServiceReglament")->header()->stretchLastSection());
}

void TestGarageSettingsForm::itsTablesAreFlatLists()
{
    open();
    for (const char *name : {"tvServiceOperations", "tvServiceReglament"}) {
        const auto *view = find<QTreeView>(name);
        QCOMPARE(view->frameShape(), QFrame::NoFrame);
        QVERIFY(!view->rootIsDecorated());
        QVERIFY(view->uniformRowHeights());
        QVERIFY(!view->itemsExpandable());
        QVERIFY(!view->expandsOnDoubleClick());
        QVERIFY(qobject_cast<const GridDelegate *>(view->itemDelegate()));
    }
    QCOMPARE(find<QTreeView>("tvServiceOperations")->contextMenuPolicy(), Qt::ActionsContextMenu);
    QCOMPARE(find<QTreeView>("tvServiceReglament")->selectionBehavior(), QAbstractItemView::SelectItems);
    QVERIFY(!find<QTreeView>("tvServiceReglament")->wordWrap());
}

void TestGarageSettingsForm::itsLayoutsAreAsAgreed()
{
    open();
    const auto *page = qobject_cast<QVBoxLayout *>(m_form->layout());
    QVERIFY(page);
    QCOMPARE(page->objectName(), "verticalLayout");
    QCOMPARE(page->contentsMargins(), QMargins(4, 4, 4, 4));
    QCOMPARE(page->itemAt(0)->widget(), find("groupBox_2"));
    QCOMPARE(page->itemAt(1)->widget(), find("groupBox"));
    for (const auto &[box, layout, stretch] :
         {std::tuple("groupBox_2", "verticalLayout_3", 1), std::tuple("groupBox", "verticalLayout_2", 2)}) {
        QCOMPARE(find(box)->layout()->objectName(), QLatin1String(layout));
        QCOMPARE(find(box)->layout()->contentsMargins(), QMargins(0, 0, 0, 1));
        QCOMPARE(find(box)->sizePolicy().verticalStretch(), stretch);
    }
    QCOMPARE(find("groupBox")->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(find("groupBox")->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
}

GARAGE_TEST(TestGarageSettingsForm)
#include "tst_garagesettingsform.moc"
