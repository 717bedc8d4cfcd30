#include "wave/WaveCurve.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace {

constexpr double kLine = 1.6;        // points
constexpr double kDotRadius = 2.5;   // points
constexpr double kFaceNear = 0.95;   // opacity of the face at the crossover
constexpr double kFaceFar = 0.22;    // and when the samples are seen as dots
constexpr std::int32_t kBeside = 2;  // frames beyond each edge, to lead the line out

QPolygonF placed(const VisibleSamples& samples, int channel, const WaveViewport& viewport,
                 double middle) {
    QPolygonF line;
    double frame = samples.first;
    for (const float sample : samples.channels[channel])
        line.append({viewport.xOf(frame++), middle - middle * double(sample)});
    return line;
}

QPolygonF closed(QPolygonF line, double middle) {
    const double left = line.first().x();
    const double right = line.last().x();
    line.append({right, middle});
    line.append({left, middle});
    return line;
}

double faceOpacity(double pointsPerFrame) {
    const double way = std::log(pointsPerFrame) / std::log(WaveCurve::kDotted);
    return kFaceNear + (kFaceFar - kFaceNear) * std::clamp(way, 0., 1.);
}

QColor translucent(QColor colour, double opacity) {
    colour.setAlphaF(float(double(colour.alphaF()) * opacity));
    return colour;
}

void drawDots(QPainter& painter, const QPolygonF& line, const QColor& colour) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    for (const QPointF& sample : line)
        painter.drawEllipse(sample, kDotRadius, kDotRadius);
}

void drawChannel(QPainter& painter, const QPolygonF& line, double pointsPerFrame, double middle,
                 const WaveCurve::Style& style) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(translucent(style.colour, faceOpacity(pointsPerFrame)));
    painter.drawPolygon(closed(line, middle));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(style.colour, kLine, Qt::SolidLine, Qt::RoundCap, Qt::BevelJoin));
    painter.drawPolyline(line);
    if (pointsPerFrame >= WaveCurve::kDotted)
        drawDots(painter, line, style.dotColour);
}

}  // namespace

bool WaveCurve::isSeenIn(const WaveViewport& viewport) {
    return viewport.span() > 0 && viewport.framesPerPoint() < 1;
}

QImage WaveCurve::of(const WaveSequenceAccess& sound, const WaveViewport& viewport,
                     const Style& style) {
    const QSizeF size(viewport.width(), style.height);
    const VisibleSamples samples =
        VisibleSamples::of(sound, std::int32_t(viewport.first()) - kBeside,
                           std::int32_t(viewport.first() + viewport.span()) + 1 + kBeside);
    QImage picture((size * style.scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (samples.empty() || picture.isNull())
        return {};
    picture.setDevicePixelRatio(style.scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int channel = 0; channel < 2; ++channel) {
        if (!samples.channels[channel].empty())
            drawChannel(painter, placed(samples, channel, viewport, style.height / 2),
                        1 / viewport.framesPerPoint(), style.height / 2, style);
    }
    return picture;
}
