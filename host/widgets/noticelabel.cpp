#include "host/widgets/noticelabel.h"

#include <QEvent>

namespace {

/// Palettes have no roles for these colours.
QColor colourOf(NoticeLabel::Kind kind, bool isDark)
{
    if (kind == NoticeLabel::Good)
        return isDark ? QColor(129, 199, 132) : QColor(27, 122, 47);
    return isDark ? QColor(255, 138, 128) : QColor(176, 0, 32);
}

} // namespace

NoticeLabel::NoticeLabel(const char *objectName, QWidget *parent) : QLabel(parent)
{
    setObjectName(QLatin1String(objectName));
    setWordWrap(true);
    applyColour();
    hide();
}

void NoticeLabel::showText(const QString &text, Kind kind)
{
    m_kind = kind;
    applyColour();
    setText(text);
    setHidden(text.isEmpty());
}

void NoticeLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColour();
}

void NoticeLabel::applyColour()
{
    QPalette colours = palette();
    const QColor background = colours.color(QPalette::Window);
    const QColor text = colourOf(m_kind, background.lightness() < colours.color(QPalette::Text).lightness());
    if (colours.color(QPalette::WindowText) == text)
        return;
    colours.setColor(QPalette::WindowText, text);
    setPalette(colours);
}
