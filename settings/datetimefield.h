#pragma once

#include <QDateTimeEdit>

/// A date-time field that can be typed as it is written, "02.03.2023 11:12": a separator after a section that
/// was left automatically, because it was full, is accepted and moves nothing. Its calendar is Russian, as
/// the rest of the window, in every locale.
class DateTimeField final : public QDateTimeEdit
{
    Q_OBJECT
public:
    explicit DateTimeField(QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool isSeparatorBeforeSection(const QString &typed) const;

    bool m_hasAdvanced = false; ///< the last key filled a section, and the next one became current
};
