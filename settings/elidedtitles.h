#pragma once

#include <QGroupBox>
#include <QLabel>

/// A label of one line that takes the width it is given: what does not fit is replaced by "…" and shown
/// whole as a tool tip. The text is plain, and text() is all of it.
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

/// A group box whose title does the same. An ampersand in it is an ampersand.
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
