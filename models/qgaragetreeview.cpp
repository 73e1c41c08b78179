#include "models/qgaragetreeview.h"

#include "models/cellflags.h"
#include "resources/garageresources.h"

#include <QMouseEvent>

QGarageTreeView::QGarageTreeView(QWidget *parent)
    : QTreeView(parent), m_serviceButton(viewport()), m_attentionButton(viewport())
{
    initGarageResources();
    setUpButton(m_serviceButton, QStringLiteral(":/icons/iconService"), tr("Записать работу"));
    setUpButton(m_attentionButton, QStringLiteral(":/icons/iconAttention"), tr("Жалоба или задание"));
}

void QGarageTreeView::setUpButton(QPushButton &button, const QString &icon, const QString &accessibleName)
{
    button.setIcon(QIcon(icon));
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
    const int flags = model() ? int(model()->flags(index)) : 0;
    const bool offersService = flags & CellFlags::service;
    const bool offersAttention = !offersService && (flags & CellFlags::attention);

    m_serviceButton.setVisible(offersService);
    m_attentionButton.setVisible(offersAttention);
    if (!offersService && !offersAttention)
        return;
    const QRect cell = visualRect(index);
    QPushButton &button = offersService ? m_serviceButton : m_attentionButton;
    button.setGeometry(cell.left(), cell.top(), cell.height(), cell.height());
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
    const bool isService = button == &m_serviceButton;
    setCurrentIndex(index);
    // A receiver may open a dialog during which the view is destroyed: nothing may follow.
    if (isService)
        emit serviceButtonClicked(index);
    else
        emit attentionButtonClicked(index);
}
