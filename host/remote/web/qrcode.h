#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

/// Shows a text as a QR code, black on white whatever the palette; blank while the text is empty.
class QrCode final : public QWidget
{
    Q_OBJECT
public:
    explicit QrCode(QWidget *parent = nullptr);

    void setText(const QString &text);
    QSize sizeHint() const override;

    /// One pixel per module, with the white margin that readers need. Null if the text is empty or too long.
    static QImage image(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage m_image;
};
