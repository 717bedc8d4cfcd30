#include "bubbles/BubbleShape.h"

#include <QLinearGradient>
#include <QPainter>
#include <algorithm>

#include "bubbles/Shadow.h"

namespace {

constexpr qreal kCorner = 8;
constexpr qreal kTip = 46;
constexpr QPointF kShadowOffset{0, 2};
constexpr qreal kShadowRadius = 3;
constexpr int kShadowAlpha = 128;  // half

struct Stop {
    qreal location;
    qreal white;
};

// The sharp step makes the upper half glossy.
constexpr Stop kFill[] = {{0, 1}, {0.01, 0.65}, {0.43, 0.4}, {0.44, 0.25}, {1, 0}};
constexpr qreal kFillAlpha = 0.95;

QColor grey(qreal white, qreal alpha) {
    return QColor::fromRgbF(float(white), float(white), float(white), float(alpha));
}

QLinearGradient fill(qreal height) {
    QLinearGradient gradient(0, 0, 0, height);
    for (const Stop& stop : kFill)
        gradient.setColorAt(stop.location, grey(stop.white, kFillAlpha));
    return gradient;
}

QImage emptyPicture(QSize pixels, qreal scale) {
    QImage picture(pixels, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    return picture;
}

/// Begins a painter whose origin is the bubble's.
void begin(QPainter& painter, QImage& picture) {
    painter.begin(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(BubbleShape::kShadowMargin, BubbleShape::kShadowMargin);
}

/// Paints inside a path only, with smooth edges, which clip paths do not have.
template <typename Paint>
void paintInside(const QPainterPath& path, QImage& onto, Paint paint) {
    QImage inside = emptyPicture(onto.size(), onto.devicePixelRatio());
    QImage mask = inside;
    QPainter painter;
    begin(painter, mask);
    painter.fillPath(path, Qt::black);
    painter.end();
    begin(painter, inside);
    paint(painter);
    painter.resetTransform();
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    painter.end();
    painter.begin(&onto);
    painter.drawImage(0, 0, inside);
}

void paintShadow(const QPainterPath& path, QImage& onto) {
    QImage shadow = emptyPicture(onto.size(), onto.devicePixelRatio());
    QPainter painter;
    begin(painter, shadow);
    painter.fillPath(path.translated(kShadowOffset), QColor(0, 0, 0, kShadowAlpha));
    painter.end();
    painter.begin(&onto);
    painter.drawImage(0, 0, Shadow::blurred(shadow, kShadowRadius * onto.devicePixelRatio()));
}

}  // namespace

QPainterPath BubbleShape::outline(qreal width, qreal shift) {
    const qreal radius = width < kBodyHeight ? std::min(kCorner, width / 2) : kCorner;
    const qreal side = 2 * radius;
    const qreal middle = width / 2;
    const qreal tip = middle + shift;
    QPainterPath path(QPointF(middle, 0));
    path.lineTo(radius, 0);
    path.arcTo(0, 0, side, side, 90, 90);
    path.lineTo(0, kBodyHeight - radius);
    path.arcTo(0, kBodyHeight - side, side, side, 180, 90);
    path.lineTo(tip - kArrowHalfWidth, kBodyHeight);
    path.lineTo(tip, kTip);
    path.lineTo(tip + kArrowHalfWidth, kBodyHeight);
    path.lineTo(width - radius, kBodyHeight);
    path.arcTo(width - side, kBodyHeight - side, side, side, 270, 90);
    path.lineTo(width, radius);
    path.arcTo(width - side, 0, side, side, 0, 90);
    path.closeSubpath();
    return path;
}

QImage BubbleShape::picture(QSizeF size, qreal scale, qreal shift) {
    const QSizeF whole = size + QSizeF(2 * kShadowMargin, 2 * kShadowMargin);
    QImage picture = emptyPicture((whole * scale).toSize(), scale);
    const QPainterPath path = outline(size.width(), shift);
    paintShadow(path, picture);
    const QPainterPath lower = path.translated(0, 1);
    paintInside(lower, picture, [&lower](QPainter& painter) {
        painter.strokePath(lower, QPen(grey(0.5, 0.5), 1));
    });
    paintInside(path, picture, [&path, &size](QPainter& painter) {
        painter.fillRect(QRectF(QPointF(), size), fill(size.height()));
        painter.strokePath(path, QPen(Qt::black, 1));
    });
    return picture;
}
