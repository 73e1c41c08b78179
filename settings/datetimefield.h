#pragma once

#include <QDateTimeEdit>

/// A date-time field that can be typed as it is written, "02.03.2023 11:12": a separator after a section that
/// was left automatically, because it was full, is accepted and moves nothing. A day from 1 to 31 can be
/// typed before its month; one that the typed month lacks becomes the month's last. A whole date can be
/// pasted. The display format must begin with "dd". The calendar is Russian, as the rest of the window, in
/// every locale.
class DateTimeField final : public QDateTimeEdit
{
    Q_OBJECT
public:
    explicit DateTimeField(QWidget *parent = nullptr);

    /// Leaves the typed day as it is, though the month may lack it.
    QValidator::State validate(QString &input, int &pos) const override;
    /// Watches the mouse in the line edit.
    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    bool isSeparatorBeforeSection(const QString &typed) const;
    /// So that the backspace key erases the digit that was typed last.
    void returnToFilledSection();
    bool pasteWholeDate();
    void type(QKeyEvent *event);
    /// Changes the value and nothing that is seen.
    void setValueBehindText(const QDateTime &value);
    /// The text may be one that the field would correct.
    void setUncheckedText(const QString &text);

    bool m_hasAdvanced = false; ///< the last input was a key that filled a section; the next one is current
};
