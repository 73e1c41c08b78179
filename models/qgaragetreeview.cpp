#include "models/qgaragetreeview.h"

#include "models/cellflags.h"
#include "models/cellkeys.h"
#include "models/cellstep.h"
#include "resources/garageresources.h"

#include <QMouseEvent>

namespace {

bool isButtonKey(const QKeyEvent &event)
{
    const bool isKey = CellKeys::isActivation(event.key()) || event.key() == Qt::Key_Insert;
    return isKey && !CellKeys::isModified(event);
}

} // namespace

QGarageTreeView::QGarageTreeView(QWidget *parent)
    : QTreeView(parent), m_serviceButton(viewport()), m_attentionButton(viewport())
{
    setUpButton(m_serviceButton, QStringLiteral(":/icons/iconService"), serviceText());
    setUpButton(m_attentionButton, QStringLiteral(":/icons/iconAttention"), attentionText());
}

QString QGarageTreeView::serviceText()
{
    return tr("Записать работу");
}

QString QGarageTreeView::attentionText()
{
    return tr("Жалоба или задание");
}

void QGarageTreeView::setUpButton(QPushButton &button, const QString &icon, const QString &accessibleName)
{
    button.setIcon(garageIcon(icon));
    button.setAccessibleName(accessibleName);
    // A button that had the focus would lose it when it is hidden, to any other widget of the window.
    button.setFocusPolicy(Qt::NoFocus);
    button.hide();
    connect(&button, &QPushButton::clicked, this, &QGarageTreeView::serviceButtonClick);
}

void QGarageTreeView::mouseMoveEvent(QMouseEvent *event)
{
    // The base class is not called: no drag selection, no hover of its own.
    const QModelIndex index = indexAt(event->pos());
    QPushButton *offered = buttonOf(index);
    m_serviceButton.setVisible(offered == &m_serviceButton);
    m_attentionButton.setVisible(offered == &m_attentionButton);
    if (!offered)
        return;
    const QRect cell = visualRect(index);
    offered->setGeometry(cell.left(), cell.top(), cell.height(), cell.height());
}

QPushButton *QGarageTreeView::buttonOf(const QModelIndex &cell)
{
    const int flags = model() ? int(model()->flags(cell)) : 0;
    if (flags & CellFlags::service)
        return &m_serviceButton;
    return (flags & CellFlags::attention) != 0 ? &m_attentionButton : nullptr;
}

void QGarageTreeView::keyPressEvent(QKeyEvent *event)
{
    const QModelIndex current = currentIndex();
    const QPushButton *button = current.isValid() && isButtonKey(*event) ? buttonOf(current) : nullptr;
    if (!button) {
        QTreeView::keyPressEvent(event);
        return;
    }
    event->accept();
    // A key that is held would open a dialog again as soon as one is closed.
    if (!event->isAutoRepeat())
        announceClick(*button, current);
}

QModelIndex QGarageTreeView::moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers)
{
    const bool isSideways = cursorAction == MoveLeft || cursorAction == MoveRight;
    if (!isSideways || !currentIndex().isValid())
        return QTreeView::moveCursor(cursorAction, modifiers);
    return cellBesideCurrent(*this, cursorAction == MoveLeft ? -1 : 1);
}

void QGarageTreeView::scrollContentsBy(int dx, int dy)
{
    // Scrolling a viewport moves its children; the buttons must stay under the pointer.
    const QPoint servicePosition = m_serviceButton.pos();
    const QPoint attentionPosition = m_attentionButton.pos();
    QTreeView::scrollContentsBy(dx, dy);
    m_serviceButton.move(servicePosition);
    m_attentionButton.move(attentionPosition);
}

void QGarageTreeView::serviceButtonClick()
{
    const auto *button = qobject_cast<QPushButton *>(sender());
    if (button != &m_serviceButton && button != &m_attentionButton)
        return;
    const QModelIndex index = indexAt(button->mapToParent(button->rect().center()));
    if (!index.isValid())
        return;
    setCurrentIndex(index);
    announceClick(*button, index);
}

void QGarageTreeView::announceClick(const QPushButton &button, const QModelIndex &cell)
{
    // A receiver may open a dialog during which the view is destroyed: nothing may follow.
    if (&button == &m_serviceButton)
        emit serviceButtonClicked(cell);
    else
        emit attentionButtonClicked(cell);
}
