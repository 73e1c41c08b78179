#include "settings/datetimefield.h"

#include <QCalendarWidget>
#include <QKeyEvent>
#include <QLineEdit>

DateTimeField::DateTimeField(QWidget *parent) : QDateTimeEdit(parent)
{
    const QLocale russian(QLocale::Russian, QLocale::Russia);
    setLocale(russian);
    setCalendarPopup(true); // there is no calendar without it
    calendarWidget()->setLocale(russian);
    calendarWidget()->setFirstDayOfWeek(russian.firstDayOfWeek());
}

void DateTimeField::keyPressEvent(QKeyEvent *event)
{
    if (m_hasAdvanced && isSeparatorBeforeSection(event->text())) {
        m_hasAdvanced = false;
        event->accept();
        return;
    }
    const int section = currentSectionIndex();
    QDateTimeEdit::keyPressEvent(event);
    const bool isDigit = !event->text().isEmpty() && event->text().at(0).isDigit();
    m_hasAdvanced = isDigit && currentSectionIndex() > section;
}

bool DateTimeField::isSeparatorBeforeSection(const QString &typed) const
{
    const int start =
        lineEdit()->hasSelectedText() ? lineEdit()->selectionStart() : lineEdit()->cursorPosition();
    return typed.size() == 1 && start > 0 && lineEdit()->text().at(start - 1) == typed.at(0);
}
