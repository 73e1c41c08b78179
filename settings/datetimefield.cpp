#include "settings/datetimefield.h"

#include <QCalendarWidget>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>

DateTimeField::DateTimeField(QWidget *parent) : QDateTimeEdit(parent)
{
    const QLocale russian(QLocale::Russian, QLocale::Russia);
    setLocale(russian);
    setCalendarPopup(true); // there is no calendar without it
    calendarWidget()->setLocale(russian);
    calendarWidget()->setFirstDayOfWeek(russian.firstDayOfWeek());
    lineEdit()->installEventFilter(this);
}

QValidator::State DateTimeField::validate(QString &input, int &pos) const
{
    constexpr int dayLength = 2;
    const QString typedDay = input.left(dayLength);
    const QValidator::State state = QDateTimeEdit::validate(input, pos);
    // Qt writes the month's last day over a larger one as soon as the day is complete.
    if (state == QValidator::Acceptable && typedDay.toInt() > input.left(dayLength).toInt())
        input.replace(0, dayLength, typedDay);
    return state;
}

void DateTimeField::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Paste) && pasteWholeDate()) {
        event->accept();
        return;
    }
    if (m_hasAdvanced && isSeparatorBeforeSection(event->text())) {
        m_hasAdvanced = false;
        event->accept();
        return;
    }
    const int section = currentSectionIndex();
    const bool isDigit = !event->text().isEmpty() && event->text().at(0).isDigit();
    const bool isErasing = event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete;
    if (m_hasAdvanced && event->key() == Qt::Key_Backspace)
        returnToFilledSection();
    if (isDigit || isErasing)
        type(event);
    else
        QDateTimeEdit::keyPressEvent(event);
    m_hasAdvanced = isDigit && currentSectionIndex() > section;
}

void DateTimeField::focusOutEvent(QFocusEvent *event)
{
    m_hasAdvanced = false;
    interpretText(); // a day that the month lacks is still in the text
    QDateTimeEdit::focusOutEvent(event);
}

bool DateTimeField::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress)
        m_hasAdvanced = false; // the click chooses the section
    return QDateTimeEdit::eventFilter(watched, event);
}

void DateTimeField::returnToFilledSection()
{
    constexpr int separatorLength = 1;
    const int end = lineEdit()->selectionStart() - separatorLength;
    if (end <= 0)
        return;
    const QString text = lineEdit()->text();
    lineEdit()->setCursorPosition(end); // makes its section the current one, and corrects the day
    const QSignalBlocker noEdits(lineEdit());
    setUncheckedText(text);
    lineEdit()->setCursorPosition(end);
}

bool DateTimeField::pasteWholeDate()
{
    const QString text = QGuiApplication::clipboard()->text().trimmed();
    const QDateTime pasted = QDateTime::fromString(text, displayFormat());
    if (pasted.isValid())
        setDateTime(pasted);
    return pasted.isValid();
}

void DateTimeField::type(QKeyEvent *event)
{
    // Qt accepts no day that the month of the value lacks, even if the text has another month.
    const QDateTime shown = dateTime();
    const QDateTime inLongMonth(QDate(shown.date().year(), 1, shown.date().day()), shown.time());
    setValueBehindText(inLongMonth);
    QDateTimeEdit::keyPressEvent(event);

    QString text = this->text();
    int position = lineEdit()->cursorPosition();
    const bool isDate = validate(text, position) == QValidator::Acceptable;
    setValueBehindText(isDate ? dateTimeFromText(text) : shown);
}

void DateTimeField::setValueBehindText(const QDateTime &value)
{
    const QSignalBlocker noSignals(this);
    const QSignalBlocker noEdits(lineEdit());
    const QString text = lineEdit()->text();
    const int cursor = lineEdit()->cursorPosition();
    const int selectionStart = lineEdit()->selectionStart();
    const int selectionLength = lineEdit()->selectionLength();
    setDateTime(value);
    setUncheckedText(text);
    if (selectionStart >= 0)
        lineEdit()->setSelection(selectionStart, selectionLength);
    else
        lineEdit()->setCursorPosition(cursor);
}

void DateTimeField::setUncheckedText(const QString &text)
{
    const QValidator *validator = lineEdit()->validator();
    lineEdit()->setValidator(nullptr);
    lineEdit()->setText(text);
    lineEdit()->setValidator(validator);
}

bool DateTimeField::isSeparatorBeforeSection(const QString &typed) const
{
    const int start =
        lineEdit()->hasSelectedText() ? lineEdit()->selectionStart() : lineEdit()->cursorPosition();
    return typed.size() == 1 && start > 0 && lineEdit()->text().at(start - 1) == typed.at(0);
}
