#include "dial/DialFace.h"

#include <QPainter>

namespace {

constexpr qreal kUnlitAlpha = 0.75;

void drawAround(QPainter& painter, QPointF centre, const QImage& image) {
    const QSizeF size = image.deviceIndependentSize();
    painter.drawImage(QRectF(centre - QPointF(size.width() / 2, size.height() / 2), size), image);
}

}  // namespace

QImage DialFace::picture(QSizeF size, qreal scale, const QImage& face, const QImage& unlitLamp,
                         const QList<QPointF>& lamps) {
    if (face.isNull() && unlitLamp.isNull())
        return {};
    QImage whole((size * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (whole.isNull())
        return {};
    whole.setDevicePixelRatio(scale);
    whole.fill(Qt::transparent);
    QPainter painter(&whole);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (!face.isNull())
        drawAround(painter, {size.width() / 2, size.height() / 2}, face);
    painter.setOpacity(kUnlitAlpha);
    for (const QPointF lamp : lamps) {
        if (!unlitLamp.isNull())
            drawAround(painter, lamp, unlitLamp);
    }
    return whole;
}
