#include "settings/confirmation.h"
#include "support/garagetest.h"
#include "support/userinput.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

/// The question before a deletion.
class TestConfirmation : public GarageTest
{
    Q_OBJECT
private slots:
    void theKeysThatClickADefaultMeanNo_data();
    void theKeysThatClickADefaultMeanNo();
    void yesTakesAnExplicitChoice();
    void theSecondLineNamesWhatIsMeant();
    void markupIsShownAsTyped_data();
    void markupIsShownAsTyped();
    void theOwnerMayBeDestroyedMeanwhile();

private:
    static QMessageBox &question(QDialog &dialog) { return *qobject_cast<QMessageBox *>(&dialog); }
    /// The label that shows the text; a missing one ends the program.
    static QLabel *labelOf(const QDialog &dialog, const QString &text);
};

QLabel *TestConfirmation::labelOf(const QDialog &dialog, const QString &text)
{
    for (QLabel *label : dialog.findChildren<QLabel *>()) {
        if (label->text() == text)
            return label;
    }
    qFatal("no label shows %s", qPrintable(text));
}

void TestConfirmation::theKeysThatClickADefaultMeanNo_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
    QTest::newRow("Space") << int(Qt::Key_Space);
    QTest::newRow("Escape") << int(Qt::Key_Escape);
}

void TestConfirmation::theKeysThatClickADefaultMeanNo()
{
    QFETCH(int, key);
    QWidget owner;
    bool isNoDefault = false;
    onNextDialog([&](QDialog &dialog) {
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        isNoDefault = question(dialog).defaultButton() == question(dialog).button(QMessageBox::No);
        QTest::keyClick(dialog.focusWidget(), Qt::Key(key));
    });
    QVERIFY(!confirmDeletion(&owner, "Масло"));
    QVERIFY(isNoDefault);
}

void TestConfirmation::yesTakesAnExplicitChoice()
{
    QWidget owner;
    onNextDialog([](QDialog &dialog) {
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Space);
    });
    QVERIFY(confirmDeletion(&owner, "Масло"));
}

void TestConfirmation::theSecondLineNamesWhatIsMeant()
{
    QWidget owner;
    onNextDialog([](QDialog &dialog) {
        const QMessageBox &box = question(dialog);
        QCOMPARE(box.windowTitle(), "Подтверждение");
        QCOMPARE(box.text(), "Точно удалить?");
        QCOMPARE(box.informativeText(), "Масло");
        const QLabel *second = labelOf(dialog, box.informativeText());
        QVERIFY(second->isVisible());
        QVERIFY(second->geometry().top() > labelOf(dialog, box.text())->geometry().bottom());
        press(dialog, QDialogButtonBox::No);
    });
    QVERIFY(!confirmDeletion(&owner, "Масло"));
    QVERIFY(allDialogsAnswered());
}

void TestConfirmation::markupIsShownAsTyped_data()
{
    QTest::addColumn<QString>("markup");
    QTest::newRow("bold") << "<b>Масло</b>";
    QTest::newRow("hidden") << "<!-- Масло --> Цепь";
    QTest::newRow("link") << "<a href=\"file:///\">Масло</a>";
}

void TestConfirmation::markupIsShownAsTyped()
{
    QFETCH(QString, markup);
    QWidget owner;
    QImage shown, interpreted, plain;
    onNextDialog([&](QDialog &dialog) {
        QLabel *label = labelOf(dialog, markup);
        shown = label->grab().toImage();
        label->setTextFormat(Qt::RichText);
        interpreted = label->grab().toImage();
        label->setTextFormat(Qt::PlainText);
        plain = label->grab().toImage();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    QVERIFY(!confirmDeletion(&owner, markup));
    QVERIFY(shown == plain);
    QVERIFY(shown != interpreted);
}

void TestConfirmation::theOwnerMayBeDestroyedMeanwhile()
{
    auto owner = std::make_unique<QWidget>();
    onNextDialog([&owner](QDialog &) { owner.reset(); });
    QVERIFY(!confirmDeletion(owner.get(), "Масло"));
    QVERIFY(!owner);
}

GARAGE_TEST(TestConfirmation)
#include "tst_confirmation.moc"
