#pragma once

#include <QLabel>

/// A label for an error or a good result, in a colour that is legible on the palette's background. Wraps its
/// text and is hidden while it is empty.
class NoticeLabel final : public QLabel
{
    Q_OBJECT
public:
    enum Kind { Error, Good };

    explicit NoticeLabel(const char *objectName, QWidget *parent = nullptr);

    void showText(const QString &text, Kind kind = Error);

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyColour();

    Kind m_kind = Error;
};
