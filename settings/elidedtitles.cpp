#include "settings/elidedtitles.h"

#include "models/plaintext.h"

#include <QHelpEvent>
#include <QStyleOptionGroupBox>
#include <QStylePainter>
#include <QToolTip>

namespace {

/// Ordinary names fit; longer ones do not make their window wider.
constexpr int longestWholeText = 60;

QSize preferredSize(const QWidget *widget, const QString &text)
{
    const QFontMetrics metrics = widget->fontMetrics();
    const int most = metrics.averageCharWidth() * longestWholeText;
    return {qMin(metrics.horizontalAdvance(PlainText::singleLine(text)), most), metrics.height()};
}

QString elided(const QWidget *widget, const QString &text, int width)
{
    return widget->fontMetrics().elidedText(PlainText::singleLine(text), Qt::ElideRight, width);
}

void showWhole(QWidget *widget, QEvent *event, const QString &text, int width)
{
    const bool isCut = elided(widget, text, width) != PlainText::singleLine(text);
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
                       isCut ? PlainText::toolTip(text, *widget) : QString(), widget);
}

} // namespace

QSize ElidedLabel::sizeHint() const
{
    return preferredSize(this, text());
}

QSize ElidedLabel::minimumSizeHint() const
{
    return sizeHint();
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    showWhole(this, event, text(), width());
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    painter.drawItemText(rect(), int(alignment()), palette(), isEnabled(), elided(this, text(), width()),
                         foregroundRole());
}

QSize ElidedGroupBox::minimumSizeHint() const
{
    QStyleOptionGroupBox option;
    initStyleOption(&option);
    const QSize title = preferredSize(this, this->title());
    // The group box's own hint includes the whole title.
    const QSize contents = QWidget::minimumSizeHint(); // NOLINT(bugprone-parent-virtual-call)
    return style()->sizeFromContents(QStyle::CT_GroupBox, &option, title, this).expandedTo(contents);
}

bool ElidedGroupBox::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QGroupBox::event(event);
    showWhole(this, event, title(), titleWidth());
    return true;
}

void ElidedGroupBox::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionGroupBox option;
    initStyleOption(&option);
    option.text = elided(this, title(), titleWidth()).replace(QLatin1Char('&'), QLatin1String("&&"));
    // The Fusion style measures the ink of the title, which is narrower than the title, and clips to that.
    option.text += QLatin1String("  ");
    painter.drawComplexControl(QStyle::CC_GroupBox, option);
}

int ElidedGroupBox::titleWidth() const
{
    return width()
        - 2 * (style()->pixelMetric(QStyle::PM_DefaultFrameWidth) + fontMetrics().averageCharWidth());
}
