#include "settings/garagesettingsform.h"
#include "support/garagetest.h"
#include "support/userinput.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QTreeView>

#include <cstdio>

/// The list of operations under the keyboard: what is stored, and which row it belongs to.
class TestOperationEditing : public DatabaseTest
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void anIdBelongsToTheRowThatWasNamed();
    void aNameThatWasNotChangedIsNotStored_data();
    void aNameThatWasNotChangedIsNotStored();
    void otherRowsCanBeEditedAfterTheRowUnderAnEditorVanished();
    void anOperationOfIdMinusOneIsAnOrdinaryRow();

private:
    template<class Widget> Widget *find(const char *name) const { return child<Widget>(*m_form, name); }
    QTreeView *view() const { return find<QTreeView>("tvServiceOperations"); }
    QLineEdit *editor() const { return view()->viewport()->findChild<QLineEdit *>(); }
    QStringList shownRows() const { return rowTexts(*view()->model()); }
    QStringList storedRows() const { return database->rows("SELECT * FROM service_operations ORDER BY id"); }
    void open();
    void trigger(const char *action) const { find<QAction>(action)->trigger(); }
    void pressKey(Qt::Key key) const;
    void type(const char *name) const;
    void startEditing(int row) const;
    void remove(int row) const;

    std::unique_ptr<GarageSettingsForm> m_form;
    std::unique_ptr<QSignalSpy> m_events;
};

void TestOperationEditing::init()
{
    DatabaseTest::init();
    database->addCar(1, "1", "SODI");
    database->addOperation(2, "Oil");
    database->addOperation(5, "Chain");
}

void TestOperationEditing::cleanup()
{
    QVERIFY(allDialogsAnswered());
    m_events.reset();
    m_form.reset();
    DatabaseTest::cleanup();
}

void TestOperationEditing::open()
{
    m_form = std::make_unique<GarageSettingsForm>();
    m_events = std::make_unique<QSignalSpy>(m_form.get(), &GarageSettingsForm::pluginSignal);
    m_form->show();
    QVERIFY(QTest::qWaitForWindowActive(m_form.get()));
}

void TestOperationEditing::pressKey(Qt::Key key) const
{
    QTest::keyClick(editor(), key);
    QTRY_VERIFY(!editor());
}

void TestOperationEditing::type(const char *name) const
{
    QVERIFY(editor());
    editor()->selectAll();
    typeText(editor(), name);
    pressKey(Qt::Key_Return);
}

void TestOperationEditing::startEditing(int row) const
{
    click(view(), view()->model()->index(row, 1));
    QTest::keyClick(view(), Qt::Key_F2);
    QVERIFY(editor());
}

void TestOperationEditing::remove(int row) const
{
    view()->setCurrentIndex(view()->model()->index(row, 1));
    onNextDialog(QDialogButtonBox::Yes);
    trigger("actionRemoveOperation");
}

void TestOperationEditing::anIdBelongsToTheRowThatWasNamed()
{
    open();
    trigger("actionAddOperation");
    pressKey(Qt::Key_Escape);
    trigger("actionAddOperation");
    type("Tyres");
    QCOMPARE(shownRows().at(2), "3|Tyres");
    QCOMPARE(view()->currentIndex(), view()->model()->index(2, 1));

    remove(3); // the row that was left empty
    QCOMPARE(storedRows().last(), "6|Tyres");
    QCOMPARE(shownRows().size(), 3);
    remove(2);
    QCOMPARE(storedRows().size(), 2);
}

void TestOperationEditing::aNameThatWasNotChangedIsNotStored_data()
{
    QTest::addColumn<QString>("end");
    QTest::newRow("return") << "return";
    QTest::newRow("click elsewhere") << "click";
    QTest::newRow("typed again") << "type";
}

void TestOperationEditing::aNameThatWasNotChangedIsNotStored()
{
    QFETCH(QString, end);
    open();
    startEditing(0);
    database->exec("UPDATE service_operations SET operation_name='Gear oil' WHERE id=2");
    if (end == "return") {
        pressKey(Qt::Key_Return);
    } else if (end == "click") {
        find<QTreeView>("tvServiceReglament")->setFocus();
        QTRY_VERIFY(!editor());
    } else {
        type("Oil");
    }
    QCOMPARE(storedRows().first(), "2|Gear oil");
    QCOMPARE(m_events->count(), 0);

    startEditing(0);
    type("Oil change");
    QCOMPARE(storedRows().first(), "2|Oil change");
    QCOMPARE(m_events->count(), 1);
}

void TestOperationEditing::otherRowsCanBeEditedAfterTheRowUnderAnEditorVanished()
{
    const QString path = home().databasePath();
    const QString other = path + ".other";
    const TestDatabase replacement(other);
    replacement.addOperation(5, "Chain");
    replacement.addOperation(7, "Brakes");

    open();
    startEditing(0);
    typeText(editor(), "x");
    QCOMPARE(std::rename(qPrintable(other), qPrintable(path)), 0);
    m_form->reloadReglamentModel();
    QTRY_VERIFY(!editor());
    QCOMPARE(shownRows(), QStringList({"1|Chain", "2|Brakes"}));

    startEditing(1);
    type("Pads");
    QCOMPARE(replacement.rows("SELECT * FROM service_operations ORDER BY id"),
             QStringList({"5|Chain", "7|Pads"}));
}

void TestOperationEditing::anOperationOfIdMinusOneIsAnOrdinaryRow()
{
    database->addOperation(-1, "Odd");
    database->exec("DELETE FROM service_operations WHERE id>0");
    open();
    for (int reload = 0; reload < 3; ++reload)
        m_form->reloadReglamentModel();
    QCOMPARE(shownRows(), QStringList("1|Odd"));

    startEditing(0);
    type("Strange");
    QCOMPARE(storedRows(), QStringList("-1|Strange"));

    trigger("actionAddOperation");
    pressKey(Qt::Key_Escape);
    remove(1);
    QCOMPARE(storedRows(), QStringList("-1|Strange"));
    trigger("actionAddOperation");
    type("Tyres");
    QCOMPARE(storedRows().size(), 2);
    QCOMPARE(shownRows(), QStringList({"1|Strange", "2|Tyres"}));
}

GARAGE_TEST(TestOperationEditing)
#include "tst_operationediting.moc"
