#include "settings/confirmation.h"
#include "settings/modaldialog.h"
#include "settings/reglamentsettingsdialog.h"
#include "settings/servicedialog.h"
#include "support/garagetest.h"
#include "support/userinput.h"

#include <QPlainTextEdit>

namespace {

using OpenDialog = int (*)(QWidget &owner);

int askForService(QWidget &owner)
{
    ModalDialog<ServiceDialog> dialog(&owner);
    return dialog.exec();
}

int askForComplaint(QWidget &owner)
{
    ModalDialog<ServiceDialog> dialog(&owner);
    dialog->setComplaintMode();
    return dialog.exec();
}

int askForLimits(QWidget &owner)
{
    using LimitsDialog = ModalDialog<ReglamentSettingsDialog>;
    LimitsDialog dialog(&owner, LimitsDialog::WithoutParent);
    return dialog.exec();
}

int confirm(QWidget &owner)
{
    return confirmDeletion(&owner, "Масло");
}

QString textOf(int key)
{
    return key == Qt::Key_Space ? " " : "\r";
}

/// As the window system sends them.
void sendKey(const QDialog &dialog, QEvent::Type type, int key, bool isRepeated)
{
    qt_handleKeyEvent(dialog.windowHandle(), type, key, {}, textOf(key), isRepeated);
}

void repeatKey(const QDialog &dialog, int key)
{
    for (int i = 0; i < 3; ++i) {
        sendKey(dialog, QEvent::KeyRelease, key, true);
        sendKey(dialog, QEvent::KeyPress, key, true);
    }
}

void pressAndRelease(const QDialog &dialog, int key)
{
    sendKey(dialog, QEvent::KeyPress, key, false);
    sendKey(dialog, QEvent::KeyRelease, key, false);
}

} // namespace

Q_DECLARE_METATYPE(OpenDialog)

/// Dialogs that a key has opened, while that key is still held.
class TestHeldKeys : public GarageTest
{
    Q_OBJECT
private slots:
    void cleanup();

    void theKeyThatOpenedADialogDoesNotCloseIt_data();
    void theKeyThatOpenedADialogDoesNotCloseIt();
    void aKeyPressedInTheDialogRepeats();
    void aHeldKeyRepeatsAgainBehindTheDialog();
};

void TestHeldKeys::cleanup()
{
    QVERIFY(allDialogsAnswered());
    GarageTest::cleanup();
}

void TestHeldKeys::theKeyThatOpenedADialogDoesNotCloseIt_data()
{
    QTest::addColumn<OpenDialog>("open");
    QTest::addColumn<int>("key");
    const QPair<const char *, OpenDialog> dialogs[] = {
        {"service", askForService}, {"limits", askForLimits}, {"confirmation", confirm}};
    for (const auto &[name, open] : dialogs) {
        QTest::addRow("%s, Return", name) << open << int(Qt::Key_Return);
        QTest::addRow("%s, Enter", name) << open << int(Qt::Key_Enter);
    }
}

void TestHeldKeys::theKeyThatOpenedADialogDoesNotCloseIt()
{
    QFETCH(OpenDialog, open);
    QFETCH(int, key);
    QWidget owner;
    bool isOpenWhileHeld = false;
    bool isOpenWhenReleased = false;
    bool isClosedByTheNextPress = false;
    onNextDialog([&](QDialog &dialog) {
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        repeatKey(dialog, key);
        isOpenWhileHeld = dialog.isVisible();
        sendKey(dialog, QEvent::KeyRelease, key, false);
        isOpenWhenReleased = dialog.isVisible();
        pressAndRelease(dialog, key);
        isClosedByTheNextPress = !dialog.isVisible();
        dialog.reject();
    });
    open(owner);
    QVERIFY(isOpenWhileHeld);
    QVERIFY(isOpenWhenReleased);
    QVERIFY(isClosedByTheNextPress);
}

void TestHeldKeys::aKeyPressedInTheDialogRepeats()
{
    QWidget owner;
    QString written;
    onNextDialog([&written](QDialog &dialog) {
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        repeatKey(dialog, Qt::Key_Space); // held since before
        sendKey(dialog, QEvent::KeyPress, Qt::Key_Return, false);
        repeatKey(dialog, Qt::Key_Return);
        written = child<QPlainTextEdit>(dialog, "teComments")->toPlainText();
        dialog.reject();
    });
    askForComplaint(owner);
    QCOMPARE(written, "\n\n\n\n");
}

void TestHeldKeys::aHeldKeyRepeatsAgainBehindTheDialog()
{
    QPlainTextEdit owner;
    owner.show();
    QVERIFY(QTest::qWaitForWindowActive(&owner));
    onNextDialog([](QDialog &dialog) {
        repeatKey(dialog, Qt::Key_Space);
        dialog.reject();
    });
    askForService(owner);
    owner.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&owner));
    qt_handleKeyEvent(owner.windowHandle(), QEvent::KeyPress, Qt::Key_Space, {}, " ", true);
    QCOMPARE(owner.toPlainText(), " ");
}

GARAGE_TEST(TestHeldKeys)
#include "tst_heldkeys.moc"
