#include "fuzzeduser.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTreeView>
#include <QtTest>

namespace {

constexpr int deepest = 3;

QModelIndex anyCell(ByteReader &bytes, const QAbstractItemModel &model)
{
    return model.index(bytes.below(model.rowCount()), bytes.below(model.columnCount()));
}

void press(ByteReader &bytes, QWidget &widget)
{
    static const Qt::Key keys[] = {Qt::Key_Up, Qt::Key_Down,   Qt::Key_Left,  Qt::Key_Right, Qt::Key_Return,
                                   Qt::Key_F2, Qt::Key_Escape, Qt::Key_Tab,   Qt::Key_Home,  Qt::Key_End,
                                   Qt::Key_A,  Qt::Key_1,      Qt::Key_Delete};
    QTest::keyClick(&widget, keys[bytes.below(int(std::size(keys)))]);
}

void useView(ByteReader &bytes, QTreeView &view)
{
    const QModelIndex cell = anyCell(bytes, *view.model());
    QWidget *viewport = view.viewport();
    switch (bytes.below(8)) {
    case 0:
        view.setCurrentIndex(cell);
        break;
    case 1:
        view.selectAll();
        break;
    case 2:
        emit view.doubleClicked(cell);
        break;
    case 3: // hover, then the button that may have come up
        QTest::mouseMove(viewport, view.visualRect(cell).center());
        for (QAbstractButton *button : viewport->findChildren<QAbstractButton *>()) {
            if (button->isVisible()) {
                button->click();
                break;
            }
        }
        break;
    case 4: {
        QHeaderView *header = view.header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(bytes.below(header->count())) + 8, 8});
        break;
    }
    case 5: {
        const QList<QAction *> actions = view.actions();
        if (!actions.isEmpty())
            actions.at(bytes.below(actions.size()))->trigger();
        break;
    }
    case 6:
        press(bytes, view);
        break;
    default:
        QTest::mouseClick(viewport, Qt::LeftButton, {}, view.visualRect(cell).center());
        break;
    }
}

void useWidget(ByteReader &bytes, QWidget &widget)
{
    if (auto *view = qobject_cast<QTreeView *>(&widget)) {
        if (view->model())
            useView(bytes, *view);
    } else if (auto *button = qobject_cast<QAbstractButton *>(&widget)) {
        button->click();
    } else if (auto *combo = qobject_cast<QComboBox *>(&widget)) {
        combo->setCurrentIndex(bytes.below(combo->count() + 1) - 1);
        emit combo->activated(combo->currentIndex());
    } else if (auto *line = qobject_cast<QLineEdit *>(&widget)) {
        line->setText(QString::fromUtf8(bytes.text()));
        emit line->textEdited(line->text());
    } else if (auto *text = qobject_cast<QPlainTextEdit *>(&widget)) {
        text->setPlainText(QString::fromUtf8(bytes.text()));
    } else {
        press(bytes, widget);
    }
}

/// The module's own widgets, without the internal widgets of Qt.
QList<QWidget *> namedChildren(const QWidget &window)
{
    QList<QWidget *> named;
    for (QWidget *child : window.findChildren<QWidget *>()) {
        if (!child->objectName().isEmpty() && !child->objectName().startsWith(QLatin1String("qt_")))
            named.append(child);
    }
    return named;
}

} // namespace

FuzzedUser::FuzzedUser(HostAct whileOpen) : m_whileOpen(std::move(whileOpen))
{
    watchWith(m_watch);
}

void FuzzedUser::watchWith(QTimer &timer)
{
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { answer(); });
    timer.start(0);
}

void FuzzedUser::act(QWidget &window)
{
    useChildren(window);
}

void FuzzedUser::useChildren(QWidget &window)
{
    const QList<QWidget *> children = namedChildren(window);
    if (!children.isEmpty())
        useWidget(*m_bytes, *children.at(m_bytes->below(children.size())));
}

void FuzzedUser::answer()
{
    if (QWidget *popup = QApplication::activePopupWidget()) {
        popup->close();
        return;
    }
    if (QWidget *dialog = QApplication::activeModalWidget())
        answerDialog(*dialog);
}

void FuzzedUser::answerDialog(QWidget &widget)
{
    const QPointer<QDialog> dialog = qobject_cast<QDialog *>(&widget);
    if (!dialog)
        qFatal("A modal window that is no dialog: %s", widget.metaObject()->className());
    // The timer that led here does not fire again before this is over: a dialog within needs another.
    QTimer innerWatch;
    watchWith(innerWatch);
    ++m_answered;
    ++m_depth;
    for (int moves = m_bytes->below(4); moves > 0 && m_depth < deepest && dialog; --moves) {
        if (m_bytes->below(3) == 0)
            m_whileOpen(*m_bytes);
        else
            useChildren(*dialog);
    }
    --m_depth;
    if (!dialog)
        return;
    const bool accepted = m_bytes->below(4) != 0 && !m_bytes->atEnd();
    if (auto *question = qobject_cast<QMessageBox *>(dialog.data())) {
        if (QAbstractButton *button = question->button(accepted ? QMessageBox::Yes : QMessageBox::No)) {
            button->click();
            return;
        }
    }
    if (accepted)
        dialog->accept();
    else
        dialog->reject();
}
