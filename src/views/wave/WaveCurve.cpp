#include "wave/WaveCurve.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "wave/CurveRaster.h"

namespace {

constexpr double kLine = 1.6;        // points
constexpr double kDotRadius = 2.5;   // points
constexpr double kFaceNear = 0.95;   // opacity of the face at the crossover
constexpr double kFaceFar = 0.22;    // and when the samples are seen as dots
constexpr std::int32_t kBeside = 2;  // frames beyond each edge, to lead the line out

/// Every part of a pixel, on straight lines from sample to sample.
CurveRaster::Heights heightsOf(const std::vector<float>& samples, double first,
                               const WaveViewport& viewport, const QSize& pixels) {
    CurveRaster::Heights heights;
    const int count = pixels.width() * CurveRaster::kParts;
    const double each = viewport.span() / count;
    // In samples; the middle of the first part.
    const double from = viewport.first() - first + each / 2;
    const double last = double(samples.size()) - 1;
    const double middle = pixels.height() / 2.;
    heights.at.resize(std::size_t(count));
    heights.begin = std::clamp(int(std::ceil(-from / each)), 0, count);
    heights.end = std::clamp(int(std::floor((last - from) / each)) + 1, heights.begin, count);
    for (int part = heights.begin; part < heights.end; ++part) {
        const double place = std::clamp(from + part * each, 0., last);
        const auto before = std::size_t(place);
        const auto after = std::min(before + 1, samples.size() - 1);
        const double share = place - double(before);
        const double value = (1 - share) * double(samples[before]) + share * double(samples[after]);
        heights.at[std::size_t(part)] = float(middle - middle * value);
    }
    return heights;
}

double faceOpacity(double pointsPerFrame) {
    const double way = std::log(pointsPerFrame) / std::log(WaveCurve::kDotted);
    return kFaceNear + (kFaceFar - kFaceNear) * std::clamp(way, 0., 1.);
}

void drawDots(QPainter& painter, const VisibleSamples& samples, const WaveViewport& viewport,
              double middle) {
    for (const auto& channel : samples.channels) {
        double frame = samples.first;
        for (const float sample : channel)
            painter.drawEllipse({viewport.xOf(frame++), middle - middle * double(sample)},
                                kDotRadius, kDotRadius);
    }
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
    picture.fill(Qt::transparent);
    const double pointsPerFrame = 1 / viewport.framesPerPoint();
    std::vector<CurveRaster::Heights> curves;
    for (const auto& channel : samples.channels) {
        if (!channel.empty())
            curves.push_back(heightsOf(channel, samples.first, viewport, picture.size()));
    }
    CurveRaster(picture, {style.colour, faceOpacity(pointsPerFrame), kLine * style.scale})
        .draw(curves);
    if (pointsPerFrame < kDotted)
        return picture;
    picture.setDevicePixelRatio(style.scale);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(style.dotColour);
    drawDots(painter, samples, viewport, style.height / 2);
    return picture;
}
