#include "settingspagetest.h"
#include "support/databaselock.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMetaMethod>
#include <QVBoxLayout>

#include <cstdio>

/// The settings page as a whole: what it shows of which file, its layout, its end.
class TestGarageSettingsForm : public SettingsPageTest
{
    Q_OBJECT
private slots:
    void theSignalAndTheNamedSlotsComeFirst();
    void showsOperationsAndLimitsOfTheFile();
    void eachModelHasOneRowWhateverItsName();
    void aFileThatCannotBeReadGivesEmptyTables();
    void aFileThatAppearsLaterIsRead();
    void aFileThatAppearsLaterIsReadBesideANewRow();
    void anotherFileInItsPlaceIsShownAndNotWrittenTo_data();
    void anotherFileInItsPlaceIsShownAndNotWrittenTo();
    void namesOfAnyKindSurvive_data();
    void namesOfAnyKindSurvive();
    void newModelsArePickedUpWithoutLosingSelectionOrEditor();
    void thePageMayBeDestroyedWhileADialogIsOpen_data();
    void thePageMayBeDestroyedWhileADialogIsOpen();
    void thePageMayBeDestroyedWhileAnEditorIsOpen();
    void eachWriteWaitsForTheOtherConnection_data();
    void eachWriteWaitsForTheOtherConnection();
    void fillsTheHostsDialog();
    void itsTablesAreFlatLists();
    void itsLayoutsHaveTheirNamesAndMargins();
};

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
    QCOMPARE(rowTexts(*operations()), QStringList({"1|Масло", "2|Цепь"}));
    QCOMPARE(rowTexts(*schedule()), QStringList({"1|SODI|1.5 ч. 10 заезд. 0 кр.|", "2|Rimo||"}));
    QCOMPARE(titles(), QStringList({"Масло", "Цепь"}));
    QCOMPARE(m_events->count(), 0);
}

void TestGarageSettingsForm::eachModelHasOneRowWhateverItsName()
{
    database->exec("INSERT INTO cars (id,num,name) VALUES (4,'4','sodi'),(5,'5',NULL),(6,'6','')");
    database->addLimit("Gone", 2, 1, 1, 1);
    database->addLimit("Rimo", 77, 1, 1, 1);
    open();
    QCOMPARE(schedule()->rowCount(), 5);
    QCOMPARE(schedule()->columnCount(), 4);
    QCOMPARE(scheduleCell(1, 1), "Rimo");
    QCOMPARE(scheduleCell(1, 2) + scheduleCell(1, 3), QString());
}

void TestGarageSettingsForm::aFileThatCannotBeReadGivesEmptyTables()
{
    database->exec("DROP TABLE service_operations");
    database->exec("DROP TABLE service_reglament");
    open();
    QCOMPARE(operations()->rowCount(), 0);
    QCOMPARE(schedule()->rowCount(), 2);
    QCOMPARE(schedule()->columnCount(), 2);
}

void TestGarageSettingsForm::aFileThatAppearsLaterIsRead()
{
    const QString folder = QFileInfo(home().databasePath()).path();
    const QString elsewhere = folder + "-elsewhere";
    database.reset();
    QVERIFY(QDir().rename(folder, elsewhere));
    open();
    QCOMPARE(schedule()->rowCount() + operations()->rowCount(), 0);

    QVERIFY(QDir().rename(elsewhere, folder));
    m_form->reloadReglamentModel();
    QCOMPARE(operations()->rowCount(), 2);
    QCOMPARE(rowTexts(*schedule()).first(), "1|SODI|1.5 ч. 10 заезд. 0 кр.|");
}

void TestGarageSettingsForm::aFileThatAppearsLaterIsReadBesideANewRow()
{
    const QString folder = QFileInfo(home().databasePath()).path();
    const QString elsewhere = folder + "-elsewhere";
    QVERIFY(QDir().rename(folder, elsewhere));
    open();
    trigger("actionAddOperation");
    QVERIFY(QDir().rename(elsewhere, folder));

    enterName("Шины");
    QCOMPARE(takeAnnouncedOperations(), QStringList({"2|Масло", "5|Цепь", "6|Шины"}));
    QCOMPARE(schedule()->columnCount(), 5);
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
        enterName("Шины");
    } else {
        onNextDialog([&](QDialog &dialog) {
            restore();
            press(dialog, action == "remove" ? QDialogButtonBox::Yes : QDialogButtonBox::Ok);
        });
        if (action == "remove") {
            select(0);
            trigger("actionRemoveOperation");
        } else {
            doubleClick(scheduleView(), schedule()->index(0, 2));
        }
    }
    QCOMPARE(operations()->index(0, 1).data().toString(), "Тормоза");
    QCOMPARE(operations()->rowCount(), 1);
    QCOMPARE(stored(backup).first, QStringList("2|Тормоза"));
    QCOMPARE(stored(backup).second, QStringList());
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
    database->addCar(9, "9", name);
    database->addOperation(9, name);
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
    QCOMPARE(takeAnnouncedOperations(), QStringList({"2|" + name, "5|Цепь", "9|" + name}));
    QCOMPARE(database->value("SELECT operation_name FROM service_operations WHERE id=2"), name);

    QStringList shown;
    onNextDialog([&shown](QDialog &dialog) {
        shown.append(child<QLabel>(dialog, "lModelName")->text());
        shown.append(child<QGroupBox>(dialog, "gbParameterName")->title());
        enterText(child<QLineEdit>(dialog, "leRunsCount"), "7");
        press(dialog, QDialogButtonBox::Ok);
    });
    doubleClick(scheduleView(), schedule()->index(2, 4));
    QCOMPARE(shown, QStringList({name, QString(name).replace('\n', ' ')}));
    QCOMPARE(database->value("SELECT runs_limit FROM service_reglament WHERE model=?", {name}), 7);
    auto *view = scheduleView();
    QVERIFY(view->header()->height() < view->height() / 2);
}

void TestGarageSettingsForm::newModelsArePickedUpWithoutLosingSelectionOrEditor()
{
    open();
    auto *view = scheduleView();
    view->setCurrentIndex(schedule()->index(1, 3));
    startRenaming(1);
    typeText(editor(), "Цепь и");
    const QPointer<QLineEdit> open = editor();

    database->exec("DELETE FROM cars WHERE name='SODI'");
    database->addCar(7, "7", "Birel");
    m_form->reloadReglamentModel();
    QCOMPARE(rowTexts(*schedule()), QStringList({"1|Rimo||", "2|Birel||"}));
    QCOMPARE(view->currentIndex(), schedule()->index(0, 3));
    QCOMPARE(view->selectionModel()->selectedIndexes(), QModelIndexList({schedule()->index(0, 3)}));
    QVERIFY(open);
    QCOMPARE(open->text(), "Цепь и");
    typeText(open, " звезда");
    QTest::keyClick(open, Qt::Key_Return);
    QTRY_VERIFY(!open);
    QCOMPARE(storedOperations().last(), "5|Цепь и звезда");
}

void TestGarageSettingsForm::thePageMayBeDestroyedWhileADialogIsOpen_data()
{
    QTest::addColumn<bool>("question");
    QTest::newRow("question") << true;
    QTest::newRow("limits") << false;
}

void TestGarageSettingsForm::thePageMayBeDestroyedWhileADialogIsOpen()
{
    QFETCH(bool, question);
    open();
    onNextDialog([this](QDialog &) { m_host.reset(); });
    if (question) {
        select(0);
        trigger("actionRemoveOperation");
    } else {
        QVERIFY(QMetaObject::invokeMethod(m_form, "on_tvServiceReglament_doubleClicked",
                                          Q_ARG(QModelIndex, schedule()->index(0, 2))));
    }
    QVERIFY(!m_form);
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(storedOperations().size(), 2);
    QCOMPARE(storedLimits(), QStringList("SODI|2|5400|10|0"));
}

void TestGarageSettingsForm::thePageMayBeDestroyedWhileAnEditorIsOpen()
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
        QTest::newRow(write) << write;
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
        enterName("Шины");
        stored.append("6|Шины");
    } else if (write == "rename") {
        startRenaming(1);
        hold();
        enterName("Шины");
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
            doubleClick(scheduleView(), schedule()->index(1, 3));
            limits.prepend("Rimo|5|0|0|0");
        }
    }
    QVERIFY(clock.elapsed() >= heldMs - 50);
    lock.reset();
    QCOMPARE(storedOperations(), stored);
    QCOMPARE(storedLimits(), limits);
    QCOMPARE(m_events->count(), write == "limits" ? 0 : 1);
    QVERIFY(database->tryExec("BEGIN EXCLUSIVE"));
    QVERIFY(database->tryExec("COMMIT"));
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
    QTRY_VERIFY(scheduleView()->width() > 850);
    QVERIFY(!scheduleView()->header()->stretchLastSection());
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
    QCOMPARE(operationsView()->contextMenuPolicy(), Qt::ActionsContextMenu);
    QCOMPARE(scheduleView()->selectionBehavior(), QAbstractItemView::SelectItems);
    QVERIFY(!scheduleView()->wordWrap());
}

void TestGarageSettingsForm::itsLayoutsHaveTheirNamesAndMargins()
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
        QCOMPARE(find(box)->layout()->objectName(), layout);
        QCOMPARE(find(box)->layout()->contentsMargins(), QMargins(0, 0, 0, 1));
        QCOMPARE(find(box)->sizePolicy().verticalStretch(), stretch);
    }
    QCOMPARE(find("groupBox")->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(find("groupBox")->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
}

GARAGE_TEST(TestGarageSettingsForm)
#include "tst_garagesettingsform.moc"
