#include "envelope/ADSRSegment.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace {

constexpr float kBarStep = 3;
const QColor kHalo = QColor::fromRgbF(0.0f, 0.0f, 0.0f, 0.75f);
constexpr double kHaloWidth = 4;  // points, half of it around the letters
const QColor kTextColour = QColor::fromRgbF(1.0f, 0.9f, 0.4f);
const QColor kLabelColour = QColor::fromRgbF(1.0f, 0.9f, 0.4f, 0.75f);

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

void ADSRSegment::drawTexts(const QString& label, const QString& value, const QFont& font,
                            QPainter& painter) const {
    if (!canBeDrawn() || !(QFontMetricsF(font).horizontalAdvance(value) < double(width)))
        return;
    painter.save();
    painter.setFont(font);
    painter.setPen(kTextColour);
    drawCentred(value, 0.55f, painter);
    painter.setPen(kLabelColour);
    drawCentred(label, 0.45f, painter);
    if (label.size() > 2 && label[2] == 'S') {
        drawCentred(QStringLiteral("▴"), 0.25f, painter);
        drawCentred(QStringLiteral("▾"), 0.65f, painter);
    }
    painter.restore();
}

/// The text's top is at that share of the height. A dark edge keeps it apart from the line.
void ADSRSegment::drawCentred(const QString& text, float share, QPainter& painter) const {
    const QFontMetricsF metrics(painter.font());
    const double left = double(x) + (double(width) - metrics.horizontalAdvance(text)) / 2;
    const double top = double(share * float(size.height()));
    const QPointF start(left, top + metrics.ascent());
    QPainterPath letters;
    letters.addText(start, painter.font(), text);
    painter.strokePath(letters,
                       QPen(kHalo, kHaloWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawText(start, text);
}
