#include "support/userinput.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>
#include <QtTest>

namespace {

int awaitedDialogs = 0;

} // namespace

void typeText(QWidget *widget, const QString &text)
{
    for (uint character : text.toUcs4())
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString::fromUcs4(&character, 1),
                            Qt::NoModifier);
}

void enterText(QWidget *editor, const QString &text)
{
    QTest::keySequence(editor, QKeySequence::SelectAll);
    QTest::keyClick(editor, Qt::Key_Delete);
    typeText(editor, text);
}

void enterIntoEditor(QAbstractItemView &view, const QString &text)
{
    auto *editor = view.findChild<QLineEdit *>();
    if (!editor)
        return;
    enterText(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents(); // the text is stored by a queued call
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the closed editor
}

void press(QAbstractButton *button)
{
    QTest::mouseClick(button, Qt::LeftButton);
}

void press(const QDialog &dialog, QDialogButtonBox::StandardButton button)
{
    press(dialog.findChild<QDialogButtonBox *>()->button(button));
}

void click(QAbstractItemView *view, const QModelIndex &cell, Qt::KeyboardModifiers modifiers)
{
    view->scrollTo(cell);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers, view->visualRect(cell).center());
}

void doubleClick(QAbstractItemView *view, const QModelIndex &cell)
{
    click(view, cell);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(cell).center());
}

QTreeView *viewInFront(QWidget &window, const char *name)
{
    auto *found = child<QTreeView>(window, name);
    for (QWidget *page = found; page != &window; page = page->parentWidget()) {
        if (auto *tabs = qobject_cast<QTabWidget *>(page->parentWidget()->parentWidget()))
            tabs->setCurrentWidget(page);
    }
    return found;
}

QStringList rowTexts(const QAbstractItemModel &model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells.append(model.index(row, column).data().toString());
        rows.append(cells.join('|'));
    }
    return rows;
}

void onNextDialog(const std::function<void(QDialog &)> &answer)
{
    ++awaitedDialogs;
    auto *timer = new QTimer(qApp);
    timer->setInterval(1);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, answer] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        --awaitedDialogs;
        answer(*dialog);
    });
    timer->start();
}

void onNextDialog(QDialogButtonBox::StandardButton button)
{
    onNextDialog([button](QDialog &dialog) { press(dialog, button); });
}

bool opensDialog(const std::function<void()> &action)
{
    bool isOpened = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&isOpened] {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
            isOpened = true;
            dialog->reject();
        }
    });
    timer.start(1);
    action();
    return isOpened;
}

bool allDialogsAnswered()
{
    return awaitedDialogs == 0;
}
