#include "models/emptytablehint.h"

#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTreeView>

#include <algorithm>

namespace {

constexpr int flags = Qt::AlignCenter | Qt::TextWordWrap;
constexpr int hintMargin = 8;
constexpr int mostCharactersOfLine = 60; ///< longer lines are hard to read
constexpr qreal smallestPoints = 5;

QRect roomIn(const QWidget &viewport)
{
    QRect room = viewport.rect().adjusted(hintMargin, hintMargin, -hintMargin, -hintMargin);
    const int width =
        std::min(room.width(), viewport.fontMetrics().averageCharWidth() * mostCharactersOfLine);
    room.setLeft(room.left() + (room.width() - width) / 2);
    room.setWidth(width);
    return room;
}

QFont fittingFont(QFont font, const QRect &room, const QString &text)
{
    const auto fits = [&] {
        const QRect needed = QFontMetrics(font).boundingRect(room, flags, text);
        return needed.width() <= room.width() && needed.height() <= room.height();
    };
    qreal points = QFontInfo(font).pointSizeF();
    while (!fits() && --points >= smallestPoints)
        font.setPointSizeF(points);
    return font;
}

} // namespace

EmptyTableHint::EmptyTableHint(QTreeView *view, const Text &text) : QObject(view), m_view(view), m_text(text)
{
    view->viewport()->installEventFilter(this);
    // Scrolling moves the pixels of the viewport.
    connect(view->horizontalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        if (!this->text().isEmpty())
            m_view->viewport()->update();
    });
}

void EmptyTableHint::install(QTreeView *view, const Text &text)
{
    new EmptyTableHint(view, text);
}

QString EmptyTableHint::text() const
{
    const bool isEmpty = m_view->model() && m_view->model()->rowCount(m_view->rootIndex()) == 0;
    return isEmpty ? m_text() : QString();
}

bool EmptyTableHint::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        // The view paints nothing over it, because it has no rows.
        const QString shown = text();
        if (!shown.isEmpty())
            paint(shown);
    }
    return QObject::eventFilter(watched, event);
}

void EmptyTableHint::paint(const QString &text) const
{
    QWidget *viewport = m_view->viewport();
    const QRect room = roomIn(*viewport);
    QPainter painter(viewport);
    painter.setFont(fittingFont(m_view->font(), room, text));
    painter.setPen(m_view->palette().color(QPalette::PlaceholderText));
    painter.drawText(room, flags, text);
}
