#pragma once

#include <QDialog>
#include <QDialogButtonBox>
#include <QModelIndex>
#include <QStringList>

#include <functional>

class QAbstractButton;
class QAbstractItemView;
class QTreeView;

// Operates widgets by real mouse and key events, and reads what they show.

/// The child of that class and name; a missing one ends the program.
template<class Type = QWidget> Type *child(const QObject &parent, const char *name)
{
    auto *found = parent.findChild<Type *>(name);
    if (!found)
        qFatal("%s has no %s", parent.metaObject()->className(), name);
    return found;
}

/// Types a text of any language; QTest::keyClicks() accepts ASCII only.
void typeText(QWidget *widget, const QString &text);
/// Types a text in place of all that the editor holds.
void enterText(QWidget *editor, const QString &text);

/// Types a text in place of that of the view's open editor, and stores it. Nothing without an editor.
void enterIntoEditor(QAbstractItemView &view, const QString &text);

void press(QAbstractButton *button);
/// Presses a standard button of a dialog or message box.
void press(const QDialog &dialog, QDialogButtonBox::StandardButton button);

/// Clicks the centre of a cell, which is scrolled into view before.
void click(QAbstractItemView *view, const QModelIndex &cell, Qt::KeyboardModifiers modifiers = {});
void doubleClick(QAbstractItemView *view, const QModelIndex &cell);

/// The tree view of that name, whose tab it brings to the front.
QTreeView *viewInFront(QWidget &window, const char *name);

/// All rows as texts, cells joined by "|".
QStringList rowTexts(const QAbstractItemModel &model);

/// Answers the next modal dialog as soon as it is shown. The answer must close it.
void onNextDialog(const std::function<void(QDialog &)> &answer);
/// Presses that button of the next modal dialog.
void onNextDialog(QDialogButtonBox::StandardButton button);
/// Whether the action opens a modal dialog, which is rejected.
bool opensDialog(const std::function<void()> &action);
/// True once every awaited dialog was answered.
bool allDialogsAnswered();
