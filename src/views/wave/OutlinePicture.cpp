#include "wave/OutlinePicture.h"

#include <QRgb>
#include <algorithm>
#include <cmath>

namespace {

constexpr float kUsedHeight = 0.9f;  // a full-scale sound leaves a little air

/// How much of the pixel at `y` lies within [top, bottom], 0 to 1.
float coverage(int y, float top, float bottom) {
    const auto above = static_cast<float>(y);
    return std::clamp(std::min(bottom, above + 1) - std::max(top, above), 0.f, 1.f);
}

QRgb blend(QRgb under, const QColor& colour, float share) {
    const auto mix = [share](int a, int b) {
        return static_cast<int>(std::lround(static_cast<float>(a) * (1 - share) +
                                            static_cast<float>(b) * share));
    };
    return qRgba(mix(qRed(under), colour.red()), mix(qGreen(under), colour.green()),
                 mix(qBlue(under), colour.blue()), mix(qAlpha(under), 255));
}

void drawColumn(QImage& picture, int x, WavePeak peak, const OutlinePicture::Style& style) {
    const float middle = static_cast<float>(style.height) / 2;
    const float least = static_cast<float>(style.thickness) / 2;
    const float scale = middle * kUsedHeight;
    const float centre = middle - scale * (peak.low + peak.high) / 2;
    const float half = std::max(scale * (peak.high - peak.low) / 2, least);
    const float top = centre - half;
    const float bottom = centre + half;
    const int last = std::min(style.height - 1, static_cast<int>(bottom));
    for (int y = std::max(0, static_cast<int>(top)); y <= last; ++y) {
        auto* const pixel = reinterpret_cast<QRgb*>(picture.scanLine(y)) + x;
        *pixel = blend(*pixel, style.colour, coverage(y, top, bottom));
    }
}

}  // namespace

QImage OutlinePicture::of(std::span<const WavePeak> peaks, const Style& style) {
    if (peaks.empty() || style.height <= 0)
        return {};
    QImage picture(static_cast<int>(peaks.size()), style.height,
                   QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull())
        return {};
    picture.fill(Qt::transparent);
    const int line = (style.height - style.thickness) / 2;
    for (int y = line; y < line + style.thickness && y >= 0; ++y)
        std::fill_n(reinterpret_cast<QRgb*>(picture.scanLine(y)), picture.width(),
                    style.lineColour.rgb());
    for (int x = 0; x < picture.width(); ++x)
        drawColumn(picture, x, peaks[static_cast<std::size_t>(x)], style);
    return picture;
}
