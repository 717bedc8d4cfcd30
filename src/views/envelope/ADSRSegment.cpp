#include "envelope/ADSRSegment.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kBarStep = 3;
const QColor kTextColour = QColor::fromRgbF(1.0f, 0.9f, 0.4f);
const QColor kLabelColour = QColor::fromRgbF(0.75f, 0.675f, 0.3f);

/// Device pixels in a point.
double pixels(const QPainter& painter) {
    return std::max(1., std::abs(painter.deviceTransform().m11()));
}

}  // namespace

bool ADSRSegment::canBeDrawn() const {
    return std::isfinite(from) && std::isfinite(to) && std::isfinite(x) && std::isfinite(width);
}

void ADSRSegment::drawBars(QPainter& painter) const {
    if (!canBeDrawn())
        return;
    const float height = float(size.height());
    const float ya = from * height;
    const float yb = to * height;
    // Whole device pixels, so that all bars look the same at any scale.
    const double scale = pixels(painter);
    const double thickness = std::round(scale) / scale;
    const float end = std::min(x + width, float(size.width()));
    for (float bar = std::max(0.f, std::trunc(x / kBarStep) * kBarStep); bar < end;
         bar += kBarStep) {
        const float t = (bar - x) / width;
        const float level = yb * t + ya * (1 - t);
        if (level > 0)
            painter.fillRect(QRectF(std::round(bar * scale) / scale, double(height - level),
                                    thickness, double(level)),
                             painter.brush());
    }
}

void ADSRSegment::drawLine(QPainter& painter) const {
    if (!canBeDrawn())
        return;
    const float height = float(size.height());
    double ya = double(height - from * height);
    double yb = double(height - to * height);
    if (from == to) {  // a level line lies on whole device pixels, and within the view
        const double scale = pixels(painter);
        const double half = painter.pen().widthF() / 2;
        const double y = std::clamp(ya, half, std::max(half, size.height() - half));
        ya = yb = std::floor((y - half) * scale + 0.5) / scale + half;
    }
    painter.drawLine(QPointF(double(x), ya), QPointF(double(x + width), yb));
}

void ADSRSegment::drawTexts(const QString& label, const QString& value, OutlinedText& texts,
                            QPainter& painter) const {
    if (!canBeDrawn() || !(texts.width(value) < double(width)))
        return;
    const auto draw = [&](const QString& text, float share, const QColor& colour) {
        texts.draw(text, centred(text, share, texts), colour, painter);
    };
    painter.save();
    draw(value, 0.55f, kTextColour);
    draw(label, 0.45f, kLabelColour);
    if (label.size() > 2 && label[2] == 'S') {
        draw(QStringLiteral("▴"), 0.25f, kLabelColour);
        draw(QStringLiteral("▾"), 0.65f, kLabelColour);
    }
    painter.restore();
}

QPointF ADSRSegment::centred(const QString& text, float share, OutlinedText& texts) const {
    const double left = double(x) + (double(width) - texts.width(text)) / 2;
    return {left, double(share * float(size.height())) + texts.ascent()};
}
