#include "host/remote/web/qrcode.h"

#include <QPainter>

#include <qrencode.h>

#include <algorithm>
#include <memory>

namespace {
constexpr int margin = 4; // modules
constexpr int usualSide = 240; // pixels
} // namespace

QrCode::QrCode(QWidget *parent) : QWidget(parent)
{
    setMinimumSize(usualSide, usualSide);
}

void QrCode::setText(const QString &text)
{
    m_image = image(text);
    update();
}

QSize QrCode::sizeHint() const
{
    return {usualSide, usualSide};
}

QImage QrCode::image(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    if (bytes.isEmpty())
        return {};
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> code(
        QRcode_encodeString(bytes.constData(), 0, QR_ECLEVEL_M, QR_MODE_8, 1), &QRcode_free);
    if (!code)
        return {};
    const int side = code->width + 2 * margin;
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int module = 0; module < code->width * code->width; ++module) {
        if ((code->data[module] & 1) != 0)
            image.setPixelColor(margin + module % code->width, margin + module / code->width, Qt::black);
    }
    return image;
}

void QrCode::paintEvent(QPaintEvent *)
{
    if (m_image.isNull())
        return;
    // Whole pixels per module: a blurred edge is hard to read.
    const int factor = std::max(1, std::min(width(), height()) / m_image.width());
    QRect place(QPoint(), m_image.size() * factor);
    place.moveCenter(rect().center());
    QPainter(this).drawImage(place, m_image);
}
