#include "settingspagetest.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

/// The settings page's list of operations: adding, renaming, removing.
class TestOperationsList : public SettingsPageTest
{
    Q_OBJECT
private slots:
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
    void theQuestionNamesTheOperation_data();
    void theQuestionNamesTheOperation();
    void theQuestionNamesWhatIsBeingTyped();
    void removingWithoutACurrentRowDoesNothing();
    void removingRemovesTheSelectedOfTwoUnstoredRows();
    void removingWhileTheNameIsTypedRemovesWhatWasStored();
    void aRenameIsAnnouncedByTheLimits();

private:
    /// What the question before the removal of the current operation names; declines it.
    QString removalQuestion() const;
};

void TestOperationsList::anAddedOperationIsStoredWhenItsNameIsTyped()
{
    open();
    trigger("actionAddOperation");
    QCOMPARE(operationsView()->currentIndex(), operations()->index(2, 1));
    QCOMPARE(storedOperations().size(), 2);
    QCOMPARE(m_events->count(), 0);

    enterName("Шины");
    QCOMPARE(storedOperations().mid(2), QStringList("6|Шины"));
    QCOMPARE(takeAnnouncedOperations(), QStringList({"2|Масло", "5|Цепь", "6|Шины"}));
    QCOMPARE(titles().last(), "Шины");
    QCOMPARE(scheduleView()->columnWidth(4), 120);

    startRenaming(2);
    enterName("Колёса");
    QCOMPARE(storedOperations().mid(2), QStringList("6|Колёса"));
}

void TestOperationsList::twoOperationsCanBeAddedInARow()
{
    open();
    trigger("actionAddOperation");
    typeText(editor(), "Шины");
    trigger("actionAddOperation"); // stores what was typed
    QCOMPARE(operations()->rowCount(), 4);
    QCOMPARE(takeAnnouncedOperations(), QStringList({"2|Масло", "5|Цепь", "6|Шины", "-1|"}));
    QTRY_COMPARE(m_form->findChildren<QLineEdit *>().size(), 1);
    enterName("Тормоза");
    QCOMPARE(storedOperations().mid(2), QStringList({"6|Шины", "7|Тормоза"}));
    QCOMPARE(titles().mid(2), QStringList({"Шины", "Тормоза"}));
}

void TestOperationsList::anOperationLeftWithoutNameIsNotStored()
{
    open();
    trigger("actionAddOperation");
    QTest::mouseClick(scheduleView()->viewport(), Qt::LeftButton);
    scheduleView()->setFocus();
    QTRY_VERIFY(!editor());
    QCOMPARE(operations()->rowCount(), 3);
    QCOMPARE(schedule()->columnCount(), 4);
    QCOMPARE(storedOperations().size(), 2);
    QCOMPARE(m_events->count(), 0);
}

void TestOperationsList::aNewIdGoesToTheRowThatWasNamed()
{
    open();
    trigger("actionAddOperation");
    QTest::keyClick(editor(), Qt::Key_Escape);
    QTRY_VERIFY(!editor());
    trigger("actionAddOperation");
    enterName("Шины");
    QCOMPARE(takeAnnouncedOperations(), QStringList({"2|Масло", "5|Цепь", "6|Шины", "-1|"}));
    QCOMPARE(storedOperations().mid(2), QStringList("6|Шины"));
}

void TestOperationsList::anEmptyNameThatWasNotEditedIsNotStored()
{
    aNewIdGoesToTheRowThatWasNamed();
    startRenaming(3);
    scheduleView()->setFocus();
    QTRY_VERIFY(!editor());
    QCOMPARE(storedOperations().mid(2), QStringList("6|Шины"));
    QCOMPARE(m_events->count(), 0);
}

void TestOperationsList::anInsertThatFailsLeavesTheRowUnstored()
{
    database->exec("CREATE TRIGGER fault BEFORE INSERT ON service_operations "
                   "BEGIN SELECT RAISE(ABORT, 'injected'); END");
    open();
    trigger("actionAddOperation");
    enterName("Шины");
    QCOMPARE(takeAnnouncedOperations(), QStringList({"2|Масло", "5|Цепь", "-1|Шины"}));
    QCOMPARE(schedule()->columnCount(), 4);

    database->exec("DROP TRIGGER fault"); // also: no transaction was left open
    startRenaming(2);
    enterName("Шины");
    QCOMPARE(storedOperations().mid(2), QStringList("6|Шины"));
}

void TestOperationsList::renamingKeepsIdAndLimits()
{
    open();
    doubleClick(operationsView(), operations()->index(0, 1));
    QVERIFY(editor());
    QCOMPARE(editor()->text(), "Масло");
    enterName("Масло мотора");
    QCOMPARE(storedOperations(), QStringList({"2|Масло мотора", "5|Цепь"}));
    QCOMPARE(storedLimits(), QStringList("SODI|2|5400|10|0"));
    QCOMPARE(takeAnnouncedOperations(), QStringList({"2|Масло мотора", "5|Цепь"}));
    QCOMPARE(titles(), QStringList({"Масло мотора", "Цепь"}));
    QCOMPARE(scheduleCell(0, 2), "1.5 ч. 10 заезд. 0 кр.");
}

void TestOperationsList::anOperationCanBeRenamedToNothing()
{
    open();
    startRenaming(0);
    enterName(QString());
    QCOMPARE(storedOperations(), QStringList({"2|", "5|Цепь"}));
    QCOMPARE(takeAnnouncedOperations(), QStringList({"2|", "5|Цепь"}));
}

void TestOperationsList::escapeLeavesTheNameAsItWas()
{
    open();
    startRenaming(0);
    typeText(editor(), "x");
    QTest::keyClick(editor(), Qt::Key_Escape);
    QTRY_VERIFY(!editor());
    QCOMPARE(rowTexts(*operations()).first(), "1|Масло");
    QCOMPARE(storedOperations().first(), "2|Масло");
    QCOMPARE(m_events->count(), 0);
}

void TestOperationsList::contextMenuOffersBothActions()
{
    open();
    auto *view = operationsView();
    QStringList offered;
    QTimer answer;
    connect(&answer, &QTimer::timeout, this, [&] {
        QWidget *menu = QApplication::activePopupWidget();
        // A menu that closes before it was activated would remove the focus from the editor that it opens.
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
    enterName("Шины");
    QCOMPARE(storedOperations().size(), 3);
}

QString TestOperationsList::removalQuestion() const
{
    QString subject;
    onNextDialog([&subject](QDialog &dialog) {
        subject = qobject_cast<QMessageBox *>(&dialog)->informativeText();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    trigger("actionRemoveOperation");
    return allDialogsAnswered() ? subject : "no question";
}

void TestOperationsList::removingAsksFirst_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("removed");
    QTest::newRow("yes") << int(QMessageBox::Yes) << true;
    QTest::newRow("no") << int(QMessageBox::No) << false;
    QTest::newRow("escape") << int(QMessageBox::NoButton) << false;
}

void TestOperationsList::removingAsksFirst()
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
    QCOMPARE(storedOperations().size(), removed ? 1 : 2);
    QCOMPARE(operations()->rowCount(), removed ? 1 : 2);
    if (removed)
        QCOMPARE(takeAnnouncedOperations(), QStringList("5|Цепь"));
    QCOMPARE(m_events->count(), 0);
    // Its column remains until the schedule is read again, its limits are never deleted.
    QCOMPARE(titles(), QStringList({"Масло", "Цепь"}));
    m_form->reloadReglamentModel();
    QCOMPARE(titles().size(), removed ? 1 : 2);
    QCOMPARE(storedLimits(), QStringList("SODI|2|5400|10|0"));
}

void TestOperationsList::theQuestionNamesTheOperation_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    QTest::newRow("ordinary") << "Масло"
                              << "Масло";
    QTest::newRow("markup") << "<img src=x>"
                            << "<img src=x>";
    QTest::newRow("line feed") << "Замена\nмасла"
                               << "Замена масла";
    QTest::newRow("long") << QString("щ").repeated(5000) << QString("щ").repeated(40) + QChar(0x2026);
    QTest::newRow("nameless") << ""
                              << "Операция без названия";
}

void TestOperationsList::theQuestionNamesTheOperation()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    database->exec(QString("UPDATE service_operations SET operation_name='%1' WHERE id=2").arg(name));
    open();
    select(0);
    QCOMPARE(removalQuestion(), shown);
}

void TestOperationsList::theQuestionNamesWhatIsBeingTyped()
{
    open();
    startRenaming(0);
    enterText(editor(), "Шины");
    QCOMPARE(removalQuestion(), "Шины");
    QCOMPARE(storedOperations(), QStringList({"2|Шины", "5|Цепь"}));
}

void TestOperationsList::removingWithoutACurrentRowDoesNothing()
{
    open();
    operationsView()->setCurrentIndex({}); // the focus chose the first
    trigger("actionRemoveOperation");
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(operations()->rowCount(), 2);
    QCOMPARE(m_events->count(), 0);
}

void TestOperationsList::removingRemovesTheSelectedOfTwoUnstoredRows()
{
    database->exec("CREATE TRIGGER fault BEFORE INSERT ON service_operations "
                   "BEGIN SELECT RAISE(ABORT, 'injected'); END");
    open();
    for (const char *name : {"Шины", "Тормоза"}) {
        trigger("actionAddOperation");
        enterName(name);
    }
    m_events->clear();
    select(3);
    onNextDialog(QDialogButtonBox::Yes);
    trigger("actionRemoveOperation");
    QCOMPARE(takeAnnouncedOperations(), QStringList({"2|Масло", "5|Цепь", "-1|Шины"}));
    QCOMPARE(storedOperations().size(), 2);
}

void TestOperationsList::removingWhileTheNameIsTypedRemovesWhatWasStored()
{
    open();
    trigger("actionAddOperation");
    typeText(editor(), "Шины");
    onNextDialog(QDialogButtonBox::Yes);
    trigger("actionRemoveOperation");
    QCOMPARE(storedOperations(), QStringList({"2|Масло", "5|Цепь"}));
    QCOMPARE(operations()->rowCount(), 2);
    QTRY_VERIFY(!editor());
}

void TestOperationsList::aRenameIsAnnouncedByTheLimits()
{
    open();
    QSignalSpy replaced(&m_form->reglamentModel(), &QAbstractItemModel::layoutChanged);
    startRenaming(0);
    enterName("Масло мотора");
    QCOMPARE(replaced.count(), 1);
    QCOMPARE(m_form->reglamentModel().findModel("SODI")->limits.value(2).opName, "Масло мотора");
    QCOMPARE(m_form->reglamentModel().limits("SODI", 2).seconds, 5400);
}

GARAGE_TEST(TestOperationsList)
#include "tst_operationslist.moc"
