#pragma once

#include <QGroupBox>
#include <QLabel>

/// A one-line label of any width: a text that does not fit is elided and shown in full as a tool tip. The
/// text is plain; text() returns all of it.
class ElidedLabel final : public QLabel
{
    Q_OBJECT
public:
    using QLabel::QLabel;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};

/// A group box with an elided title. An ampersand in the title is shown, not a mnemonic.
class ElidedGroupBox final : public QGroupBox
{
    Q_OBJECT
public:
    using QGroupBox::QGroupBox;

    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int titleWidth() const;
};
