#include "models/maintainancedelegate.h"
#include "support/garagetest.h"
#include "support/garagewindow.h"
#include "support/moments.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTreeView>

/// The window itself: its widgets, its models, when it requests a reload and what a reload changes.
class TestGarageForm : public GarageTest
{
    Q_OBJECT
private slots:
    void itOffersItsThreeTabs();
    void itsWidgetsHaveTheirNamesAndRussianTexts_data();
    void itsWidgetsHaveTheirNamesAndRussianTexts();
    void itsSignalsAreDeclaredInOrder();
    void itsLabelsNameTheirFields_data();
    void itsLabelsNameTheirFields();
    void itsArrowsPointToWhereTheCarsGo();
    void itsTablesAreFlatLists();
    void itsTablesDrawTheModulesGrid();
    void itWorksWithoutADatabase();
    void itReloadsWheneverItIsShown();
    void itsButtonsReloadAndClose_data();
    void itsButtonsReloadAndClose();
    void aReloadFillsTablesAndCombos();
    void aReloadKeepsTheChosenModelByItsPlace();
    void aModelFilterBeyondTheEndGoesBackToAll();
    void theLogCombosKeepWhatIsChosenOrGoBackToAll();
    void theFiltersNarrowTheMaintenanceTable();
    void sortKindsReorderAnOperationColumn();
    void theFirstClickOnAHeaderSorts();
    void draggedWidthsSurviveReloads();
    void newOperationColumnsHaveTheirWidth();
    void editedLimitsShowAtOnce();
    void limitsEditedInTheDialogShowAtOnce();
    void theCurrentCarStaysCurrentOrNoneIs();
    void rowsAreTwoLinesHigh();

private:
    static void addSampleData(const TestDatabase &database);
};

void TestGarageForm::addSampleData(const TestDatabase &database)
{
    database.addCar(1, "10", "Sodi");
    database.addCar(2, "9", "Sodi");
    database.addCar(3, "3", "RX");
    database.addOperation(1, "Масло");
    database.addOperation(2, "Цепь");
    database.addLimit("Sodi", 1, 0, 0, 2);
    database.addRecord(1, 1, "2026-01-01T10:00:00.000Z", DoneState);
    database.addRecord(2, 1, "2026-01-02T10:00:00.000Z", DoneState);
    database.addRecord(3, -1, "2026-01-03T10:00:00.000Z", OpenState, "Стук");
    for (int lap = 0; lap < 3; ++lap)
        database.addLap(1, 1, QString("2026-01-05T10:0%1:00.000Z").arg(lap), 60000);
}

void TestGarageForm::itOffersItsThreeTabs()
{
    const auto database = createDatabase();
    const GarageWindow window;
    const auto *tabs = window.find<QTabWidget>("tabWidget");
    QCOMPARE(tabs->count(), 3);
    QCOMPARE(tabs->widget(0)->objectName(), "tabAvailableCars");
    QCOMPARE(tabs->tabText(0), "Машины в работе");
    QCOMPARE(tabs->widget(1)->objectName(), "tabCars");
    QCOMPARE(tabs->tabText(1), "Техника");
    QCOMPARE(tabs->widget(2)->objectName(), "tabServiceLog");
    QCOMPARE(tabs->tabText(2), "Журнал");
    QCOMPARE(tabs->currentIndex(), 1);
    QCOMPARE(window.form->windowTitle(), "Form");
    QVERIFY(window.form->findChild<QObject *>("maintainanceModel"));
    QVERIFY(window.form->findChild<QObject *>("maintaincancFilterProxy"));
    QCOMPARE(window.find<QSplitter>("splitter")->count(), 3);
}

void TestGarageForm::itsWidgetsHaveTheirNamesAndRussianTexts_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QStringList>("texts");
    const auto row = [](const char *name, const char *property, const QStringList &texts) {
        QTest::newRow(name) << QByteArray(name) << QByteArray(property) << texts;
    };
    row("pbCloseGarage", "text", {"Закрыть"});
    row("pbCloseGarage_2", "text", {"Закрыть"});
    row("pbCloseGarage_3", "text", {"Закрыть"});
    row("gbAllCars", "title", {"Все машины"});
    row("gbAvailableCars", "title", {"Доступные для заездов"});
    row("pbReloadMaintainance", "text", {"Обновить"});
    row("pbReloadLog", "text", {"Обновить"});
    row("pushButton", "text", {"Сброс"});
    row("pushButton_2", "text", {"Сброс"});
    row("actionDeleteMaintainanceItem", "text", {"Удалить запись"});
    row("actionDoneOperation", "text", {"Выполнено"});
    row("cbSortKind", "items",
        {"Дата обслуживания", "Общее время", "Количество заездов", "Количество кругов"});
    row("cbFilterServiceState", "items", {"Все", "Требуется сервис"});
}

void TestGarageForm::itsWidgetsHaveTheirNamesAndRussianTexts()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, property);
    QFETCH(QStringList, texts);
    const auto database = createDatabase();
    const GarageWindow window;
    const auto *object = window.find<QObject>(name.constData());
    if (const auto *combo = qobject_cast<const QComboBox *>(object)) {
        QStringList items;
        for (int i = 0; i < combo->count(); ++i)
            items.append(combo->itemText(i));
        QCOMPARE(items, texts);
        return;
    }
    QCOMPARE(object->property(property.constData()).toString(), texts.first());
}

void TestGarageForm::itsSignalsAreDeclaredInOrder()
{
    const QMetaObject &meta = GarageForm::staticMetaObject;
    const QByteArrayList expected {"closeGarage()",
                                   "reloadGarageStats()",
                                   "updateServiceTable(QJsonArray,QJsonArray)",
                                   "addRemoteOperation(QJsonObject)",
                                   "deleteOperation(int,int)",
                                   "pluginSignal(QString,QJsonObject)",
                                   "reloadMaintainanceData(QList<MaintainanceModel::MaintainanceItem>,"
                                   "QList<ServiceLogModel::ServiceLogItem>,QMap<int,QString>)",
                                   "on_pbCloseGarage_clicked()",
                                   "on_pbCloseGarage_2_clicked()",
                                   "on_pbCloseGarage_3_clicked()",
                                   "serviceClicked(QModelIndex)",
                                   "attentionClicked(QModelIndex)",
                                   "on_cbSortKind_currentIndexChanged(int)",
                                   "on_pbReloadMaintainance_clicked()",
                                   "on_pbReloadLog_clicked()",
                                   "on_cbFilterModels_currentIndexChanged(QString)",
                                   "on_cbFilterServiceState_currentIndexChanged(int)",
                                   "on_pushButton_clicked()",
                                   "on_actionDeleteMaintainanceItem_triggered()",
                                   "on_actionDoneOperation_triggered()",
                                   "on_pbRemoveAvailable_clicked()",
                                   "on_pbSetAvailable_clicked()",
                                   "on_tvAvailableCars_doubleClicked(QModelIndex)",
                                   "on_tvAllCars_doubleClicked(QModelIndex)",
                                   "on_pushButton_2_clicked()",
                                   "on_cbLogFilterModels_activated(int)",
                                   "on_leLogFilterNum_textEdited(QString)",
                                   "on_cbLogFilterOperation_activated(int)"};
    QByteArrayList actual;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        actual.append(meta.method(i).methodSignature());
    QCOMPARE(actual, expected);
}

void TestGarageForm::itsLabelsNameTheirFields_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QString>("text");
    QTest::newRow("order") << QByteArray("cbSortKind") << "Сортировка";
    QTest::newRow("model") << QByteArray("cbFilterModels") << "Модель";
    QTest::newRow("service") << QByteArray("cbFilterServiceState") << "Сервис";
    QTest::newRow("log's model") << QByteArray("cbLogFilterModels") << "Модель";
    QTest::newRow("log's number") << QByteArray("leLogFilterNum") << "Номер";
    QTest::newRow("log's operation") << QByteArray("cbLogFilterOperation") << "Операция";
}

void TestGarageForm::itsLabelsNameTheirFields()
{
    QFETCH(QByteArray, field);
    QFETCH(QString, text);
    const auto database = createDatabase();
    const GarageWindow window;
    const auto *widget = window.find<QWidget>(field.constData());
    QStringList names;
    for (const QLabel *label : window.form->findChildren<QLabel *>()) {
        if (label->buddy() == widget)
            names.append(label->text());
    }
    QCOMPARE(names, QStringList(text));

    for (QWidget *parent = widget->parentWidget(); parent; parent = parent->parentWidget()) {
        if (const auto *box = qobject_cast<QGroupBox *>(parent))
            QCOMPARE(box->title(), "Фильтры");
    }
}

void TestGarageForm::itsArrowsPointToWhereTheCarsGo()
{
    const auto database = createDatabase();
    const GarageWindow window;
    const auto isShown = [&window](const char *button, const QString &icon) {
        const QSize size(32, 32);
        return window.find<QAbstractButton>(button)->icon().pixmap(size).toImage()
            == QIcon(icon).pixmap(size).toImage();
    };
    QVERIFY(!QIcon(":/icons/iconMoveRight").isNull());
    QVERIFY(isShown("pbSetAvailable", ":/icons/iconMoveRight"));
    QVERIFY(isShown("pbRemoveAvailable", ":/icons/iconMoveLeft"));
    QVERIFY(!isShown("pbSetAvailable", ":/icons/iconMoveLeft"));
}

void TestGarageForm::itsTablesDrawTheModulesGrid()
{
    const auto database = createDatabase();
    const GarageWindow window;
    for (const char *name : {"tvAllCars", "tvAvailableCars", "tvServiceLog"}) {
        const QAbstractItemDelegate *delegate = window.find<QTreeView>(name)->itemDelegate();
        QVERIFY(qobject_cast<const GridDelegate *>(delegate));
        QCOMPARE(delegate, window.find<QTreeView>("tvAllCars")->itemDelegate());
    }
    const auto *table = window.find<QTreeView>("tvMaintainanceTable");
    QVERIFY(qobject_cast<const MaintainanceDelegate *>(table->itemDelegate()));
    QCOMPARE(table->itemDelegate()->parent(), table);
}

void TestGarageForm::itsTablesAreFlatLists()
{
    const auto database = createDatabase();
    const GarageWindow window;
    for (const char *name : {"tvAllCars", "tvAvailableCars", "tvMaintainanceTable", "tvServiceLog"}) {
        const auto *view = window.find<QTreeView>(name);
        QVERIFY(!view->rootIsDecorated());
        QVERIFY(!view->itemsExpandable());
        QVERIFY(!view->expandsOnDoubleClick());
        QCOMPARE(view->isSortingEnabled(), QString(name) == "tvMaintainanceTable");
        QCOMPARE(view->uniformRowHeights(), QString(name) != "tvServiceLog");
    }
    const auto *log = window.find<QTreeView>("tvServiceLog");
    QCOMPARE(log->frameShape(), QFrame::NoFrame);
    QCOMPARE(log->indentation(), 0);
    QCOMPARE(log->contextMenuPolicy(), Qt::ActionsContextMenu);
    QCOMPARE(log->actions().size(), 2);
    QVERIFY(window.find<QTreeView>("tvMaintainanceTable")->hasMouseTracking());
    QVERIFY(!window.find<QTreeView>("tvMaintainanceTable")->header()->stretchLastSection());
    QCOMPARE(log->columnWidth(5), 240);
}

void TestGarageForm::itWorksWithoutADatabase()
{
    GarageWindow window;
    window.show();
    QCOMPARE(window.delivered, 1);
    QCOMPARE(window.find<QTreeView>("tvMaintainanceTable")->model()->rowCount(), 0);
    QCOMPARE(window.find<QComboBox>("cbFilterModels")->currentText(), "Все");
}

void TestGarageForm::itReloadsWheneverItIsShown()
{
    const auto database = createDatabase();
    GarageWindow window;
    QCOMPARE(window.requested, 0);
    window.show();
    QCOMPARE(window.requested, 1);
    window.form->hide();
    window.show();
    QCOMPARE(window.requested, 2);
    QCOMPARE(window.delivered, 2);
}

void TestGarageForm::itsButtonsReloadAndClose_data()
{
    QTest::addColumn<QByteArray>("tab");
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QString>("event");
    QTest::newRow("refresh the maintenance table")
        << QByteArray("tabCars") << QByteArray("pbReloadMaintainance") << "reloadGarageStats";
    QTest::newRow("refresh the log") << QByteArray("tabServiceLog") << QByteArray("pbReloadLog")
                                     << "reloadGarageStats";
    QTest::newRow("close from the table")
        << QByteArray("tabCars") << QByteArray("pbCloseGarage") << "closeGarage";
    QTest::newRow("close from the log")
        << QByteArray("tabServiceLog") << QByteArray("pbCloseGarage_2") << "closeGarage";
    QTest::newRow("close from the cars")
        << QByteArray("tabAvailableCars") << QByteArray("pbCloseGarage_3") << "closeGarage";
}

void TestGarageForm::itsButtonsReloadAndClose()
{
    QFETCH(QByteArray, tab);
    QFETCH(QByteArray, button);
    QFETCH(QString, event);
    const auto database = createDatabase();
    GarageWindow window;
    window.show();
    window.openTab(tab.constData());
    window.takeEvents();
    window.click(button.constData());
    QCOMPARE(window.eventNames(), QStringList(event));
    window.settle();
}

void TestGarageForm::aReloadFillsTablesAndCombos()
{
    const auto database = createDatabase();
    addSampleData(*database);
    GarageWindow window;
    window.show();

    const QString done = shown("2026-01-01 10:00") + "\n0.1 ч., 1 з., 3 кр.";
    QCOMPARE(rowTexts(*window.find<QTreeView>("tvMaintainanceTable")->model()),
             QStringList({"1|RX|3||", QString("2|Sodi|9|%1|").arg(shown("2026-01-02 10:00")),
                          QString("3|Sodi|10|%1|").arg(done)}));
    QCOMPARE(rowTexts(*window.find<QTreeView>("tvServiceLog")->model()),
             QStringList({QString("1|RX|3|%1|||Стук").arg(shown("2026-01-03 10:00")),
                          QString("2|Sodi|9|%1|Масло||").arg(shown("2026-01-02 10:00")),
                          QString("3|Sodi|10|%1|Масло||").arg(shown("2026-01-01 10:00"))}));
    const auto items = [&window](const char *name) {
        const auto *combo = window.find<QComboBox>(name);
        QStringList texts;
        for (int i = 0; i < combo->count(); ++i)
            texts.append(combo->itemText(i) + '=' + combo->itemData(i).toString());
        return texts;
    };
    const QStringList models {"Все=", "Sodi=", "RX="};
    QCOMPARE(items("cbFilterModels"), models);
    QCOMPARE(items("cbLogFilterModels"), models);
    QCOMPARE(items("cbLogFilterOperation"),
             QStringList({"Все=-2", "Невыполненные=-3", "Масло=1", "Цепь=2", "Прочее=-1"}));
    for (const char *combo : {"cbFilterModels", "cbLogFilterModels", "cbLogFilterOperation"})
        QCOMPARE(window.find<QComboBox>(combo)->currentIndex(), 0);
}

void TestGarageForm::aReloadKeepsTheChosenModelByItsPlace()
{
    const auto database = createDatabase();
    addSampleData(*database);
    GarageWindow window;
    window.show();
    window.choose("cbFilterModels", 2);
    QCOMPARE(window.find<QTreeView>("tvMaintainanceTable")->model()->rowCount(), 1);

    database->exec("UPDATE cars SET name='Neo' WHERE id=1");
    window.reload();
    // Neo, Sodi, RX: the second place is Sodi's now, and the filter agrees with what the combo shows.
    QCOMPARE(window.find<QComboBox>("cbFilterModels")->currentText(), "Sodi");
    QCOMPARE(rowTexts(*window.find<QTreeView>("tvMaintainanceTable")->model()),
             QStringList(QString("1|Sodi|9|%1|").arg(shown("2026-01-02 10:00"))));
}

void TestGarageForm::aModelFilterBeyondTheEndGoesBackToAll()
{
    const auto database = createDatabase();
    addSampleData(*database);
    GarageWindow window;
    window.show();
    window.choose("cbFilterModels", 2);
    database->exec("DELETE FROM cars WHERE name='RX'");
    window.reload();
    QCOMPARE(window.find<QComboBox>("cbFilterModels")->currentIndex(), 0);
    QCOMPARE(window.find<QTreeView>("tvMaintainanceTable")->model()->rowCount(), 2);
}

void TestGarageForm::theLogCombosKeepWhatIsChosenOrGoBackToAll()
{
    const auto database = createDatabase();
    addSampleData(*database);
    GarageWindow window;
    window.show();
    window.openTab("tabServiceLog");
    window.choose("cbLogFilterModels", 1);
    window.choose("cbLogFilterOperation", 2);
    auto *log = window.find<QTreeView>("tvServiceLog")->model();
    QCOMPARE(log->rowCount(), 2);

    database->exec("UPDATE cars SET name='Neo' WHERE id=1");
    database->addOperation(-7, "Раньше всех");
    window.reload();
    QCOMPARE(window.find<QComboBox>("cbLogFilterModels")->currentText(), "Sodi");
    QCOMPARE(window.find<QComboBox>("cbLogFilterOperation")->currentText(), "Масло");
    QCOMPARE(log->rowCount(), 1);

    database->exec("DELETE FROM cars WHERE name='Sodi'");
    database->exec("DELETE FROM service_operations WHERE id=1");
    window.reload();
    QCOMPARE(window.find<QComboBox>("cbLogFilterModels")->currentIndex(), 0);
    QCOMPARE(window.find<QComboBox>("cbLogFilterOperation")->currentIndex(), 0);
    QCOMPARE(log->rowCount(), 3);
}

void TestGarageForm::theFiltersNarrowTheMaintenanceTable()
{
    const auto database = createDatabase();
    addSampleData(*database);
    GarageWindow window;
    window.show();
    auto *table = window.find<QTreeView>("tvMaintainanceTable")->model();
    window.choose("cbFilterServiceState", 1);
    QCOMPARE(table->rowCount(), 2); // one complaint, one over its laps
    window.choose("cbFilterModels", 1);
    QCOMPARE(table->rowCount(), 1);
    QCOMPARE(table->index(0, 0).data().toInt(), 1);
    window.reload();
    QCOMPARE(table->rowCount(), 1);
    window.click("pushButton");
    QCOMPARE(table->rowCount(), 3);
    QCOMPARE(window.find<QComboBox>("cbFilterModels")->currentIndex(), 0);
    QCOMPARE(window.find<QComboBox>("cbFilterServiceState")->currentIndex(), 0);
}

void TestGarageForm::sortKindsReorderAnOperationColumn()
{
    const auto database = createDatabase();
    addSampleData(*database);
    GarageWindow window;
    window.show();
    auto *view = window.find<QTreeView>("tvMaintainanceTable");
    const int column = window.columnOf("Масло");
    view->sortByColumn(column, Qt::AscendingOrder);
    QCOMPARE(window.visibleRowOf("10"), 0); // the earlier date
    window.choose("cbSortKind", 3);
    QCOMPARE(window.visibleRowOf("9"), 0); // the fewer laps
    QCOMPARE(window.visibleRowOf("3"), 2); // never done: last
}

void TestGarageForm::theFirstClickOnAHeaderSorts()
{
    const auto database = createDatabase();
    addSampleData(*database);
    GarageWindow window;
    window.show();
    auto *view = window.find<QTreeView>("tvMaintainanceTable");
    QCOMPARE(view->header()->sortIndicatorSection(), 2);
    QCOMPARE(view->header()->sortIndicatorOrder(), Qt::AscendingOrder);
    const QPoint number(view->header()->sectionViewportPosition(2) + 10, view->header()->height() / 2);
    QTest::mouseClick(view->header()->viewport(), Qt::LeftButton, {}, number);
    QCOMPARE(view->header()->sortIndicatorOrder(), Qt::DescendingOrder);
    QCOMPARE(window.visibleRowOf("10"), 0);
}

void TestGarageForm::draggedWidthsSurviveReloads()
{
    const auto database = createDatabase();
    addSampleData(*database);
    GarageWindow window;
    window.show();
    auto *view = window.find<QTreeView>("tvMaintainanceTable");
    QCOMPARE(view->columnWidth(0), 40);
    QCOMPARE(view->columnWidth(1), 80);
    QCOMPARE(view->columnWidth(2), 60);
    view->setColumnWidth(1, 210);
    const int oil = window.columnOf("Масло");
    view->setColumnWidth(oil, 175);
    database->addOperation(3, "Шины");
    window.settings->reloadReglamentModel();
    window.reload();
    QCOMPARE(view->columnWidth(1), 210);
    QCOMPARE(view->columnWidth(oil), 175);
}

void TestGarageForm::newOperationColumnsHaveTheirWidth()
{
    const auto database = createDatabase();
    addSampleData(*database);
    GarageWindow window;
    window.show();
    const auto *view = window.find<QTreeView>("tvMaintainanceTable");
    QCOMPARE(view->columnWidth(window.columnOf("Масло")), 160);
    QCOMPARE(view->columnWidth(window.columnOf("Цепь")), 160);
}

void TestGarageForm::editedLimitsShowAtOnce()
{
    const auto database = createDatabase();
    addSampleData(*database);
    GarageWindow window;
    window.show();
    window.choose("cbFilterServiceState", 1);
    auto *table = window.find<QTreeView>("tvMaintainanceTable")->model();
    QCOMPARE(table->rowCount(), 2);
    database->exec("UPDATE service_reglament SET laps_limit=100");
    window.settings->reloadReglamentModel();
    QCOMPARE(table->rowCount(), 1);
}

void TestGarageForm::limitsEditedInTheDialogShowAtOnce()
{
    const auto database = createDatabase();
    addSampleData(*database);
    GarageWindow window;
    window.show();
    window.choose("cbFilterServiceState", 1);
    auto *table = window.find<QTreeView>("tvMaintainanceTable")->model();
    QCOMPARE(table->rowCount(), 2);
    window.settings->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.settings.get()));
    auto *limits = child<QTreeView>(*window.settings, "tvServiceReglament");
    QModelIndex cell;
    for (int row = 0; row < limits->model()->rowCount(); ++row)
        for (int column = 2; column < limits->model()->columnCount(); ++column)
            if (!limits->model()->index(row, column).data().toString().isEmpty())
                cell = limits->model()->index(row, column);
    QVERIFY(cell.isValid());
    onNextDialog([](QDialog &dialog) {
        child<QLineEdit>(dialog, "leLapsCount")->setText("100");
        dialog.accept();
    });
    limits->scrollTo(cell);
    const QPoint at = limits->visualRect(cell).center();
    QTest::mouseClick(limits->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(limits->viewport(), Qt::LeftButton, {}, at);
    QVERIFY(allDialogsAnswered());
    QCOMPARE(table->rowCount(), 1);
}

void TestGarageForm::theCurrentCarStaysCurrentOrNoneIs()
{
    const auto database = createDatabase();
    addSampleData(*database);
    GarageWindow window;
    window.show();
    auto *view = window.find<QTreeView>("tvMaintainanceTable");
    view->setCurrentIndex(view->model()->index(window.visibleRowOf("9"), 3));
    database->addCar(4, "1", "AX");
    window.reload();
    QCOMPARE(view->currentIndex().row(), window.visibleRowOf("9"));
    QCOMPARE(view->currentIndex().column(), 3);
    database->exec("DELETE FROM cars WHERE num='9'");
    window.reload();
    QVERIFY(!view->currentIndex().isValid());

    window.openTab("tabServiceLog");
    auto *log = window.find<QTreeView>("tvServiceLog");
    log->setCurrentIndex(log->model()->index(0, 6));
    database->addRecord(1, 2, "2026-02-01T10:00Z", DoneState);
    window.reload();
    QCOMPARE(log->currentIndex().row(), 1);
    QCOMPARE(log->currentIndex().data().toString(), "Стук");
}

void TestGarageForm::rowsAreTwoLinesHigh()
{
    const auto database = createDatabase();
    addSampleData(*database);
    GarageWindow window;
    window.show();
    const auto *view = window.find<QTreeView>("tvMaintainanceTable");
    for (int row = 0; row < 3; ++row) {
        QVERIFY(view->visualRect(view->model()->index(row, 0)).height()
                >= 2 * view->fontMetrics().lineSpacing());
    }
}

GARAGE_TEST(TestGarageForm)
#include "tst_garageform.moc"
