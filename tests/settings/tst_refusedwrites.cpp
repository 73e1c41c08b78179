#include "settingspagetest.h"
#include "support/faultyfiles.h"

/// The settings page on a disk that refuses its writes: it shows and announces what is stored.
class TestRefusedWrites : public SettingsPageTest
{
    Q_OBJECT
private slots:
    void initTestCase() { FaultyFiles::install(); }
    void init();
    void cleanup();

    void aRefusedNameIsNeitherShownNorAnnounced();
    void aRefusedRemovalBringsTheOperationBack();
    void refusedLimitsAreNotShown();
    void aRefusedNewOperationIsStoredWithItsNextName();

private:
    static void refuseWrites() { FaultyFiles::fail(FaultyFiles::OpenJournal, 1, FaultyFiles::UntilCleared); }
};

void TestRefusedWrites::init()
{
    FaultyFiles::clear();
    SettingsPageTest::init();
    open();
}

void TestRefusedWrites::cleanup()
{
    FaultyFiles::clear();
    SettingsPageTest::cleanup();
}

void TestRefusedWrites::aRefusedNameIsNeitherShownNorAnnounced()
{
    refuseWrites();
    startRenaming(0);
    enterName("Шины");
    QVERIFY(FaultyFiles::hasStruck());
    QCOMPARE(storedOperations(), QStringList({"2|Масло", "5|Цепь"}));
    QCOMPARE(takeAnnouncedOperations(), storedOperations());
    QCOMPARE(rowTexts(*operations()), QStringList({"1|Масло", "2|Цепь"}));
    QCOMPARE(titles(), QStringList({"Масло", "Цепь"}));

    FaultyFiles::clear();
    startRenaming(1);
    enterName("Шины");
    QCOMPARE(storedOperations(), QStringList({"2|Масло", "5|Шины"}));
    QCOMPARE(takeAnnouncedOperations(), storedOperations());
}

void TestRefusedWrites::aRefusedRemovalBringsTheOperationBack()
{
    refuseWrites();
    select(0);
    onNextDialog(QDialogButtonBox::Yes);
    trigger("actionRemoveOperation");
    QCOMPARE(storedOperations(), QStringList({"2|Масло", "5|Цепь"}));
    QCOMPARE(takeAnnouncedOperations(), storedOperations());
    QCOMPARE(rowTexts(*operations()), QStringList({"1|Масло", "2|Цепь"}));
}

void TestRefusedWrites::refusedLimitsAreNotShown()
{
    refuseWrites();
    onNextDialog([](QDialog &dialog) {
        enterText(child<QLineEdit>(dialog, "leRunsCount"), "7");
        press(dialog, QDialogButtonBox::Ok);
    });
    doubleClick(scheduleView(), schedule()->index(0, 2));
    QCOMPARE(scheduleCell(0, 2), "1.5 ч. 10 заезд. 0 кр.");
}

void TestRefusedWrites::aRefusedNewOperationIsStoredWithItsNextName()
{
    refuseWrites();
    trigger("actionAddOperation");
    enterName("Шины");
    QCOMPARE(takeAnnouncedOperations(), QStringList({"2|Масло", "5|Цепь", "-1|Шины"}));

    FaultyFiles::clear();
    startRenaming(2);
    enterName("Диски");
    QCOMPARE(storedOperations(), QStringList({"2|Масло", "5|Цепь", "6|Диски"}));
    QCOMPARE(takeAnnouncedOperations(), storedOperations());
}

GARAGE_TEST(TestRefusedWrites)
#include "tst_refusedwrites.moc"
