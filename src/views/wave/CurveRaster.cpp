#include "wave/CurveRaster.h"

#include <QColor>
#include <algorithm>
#include <cmath>
#include <utility>

namespace {

std::vector<float> roundBrush(double thickness) {
    const double radius = thickness / 2;
    std::vector<float> halves;
    for (double away = 0; away < radius; away += 1. / CurveRaster::kParts)
        halves.push_back(float(std::sqrt(radius * radius - away * away)));
    return halves;
}

std::vector<QRgb> shadesOf(const QColor& colour) {
    std::vector<QRgb> shades;
    for (int alpha = 0; alpha < 256; ++alpha)
        shades.push_back(qPremultiply(qRgba(colour.red(), colour.green(), colour.blue(), alpha)));
    return shades;
}

}  // namespace

CurveRaster::CurveRaster(QImage& picture, const Style& style)
    : m_picture(picture),
      m_face(float(style.face)),
      m_brush(roundBrush(style.thickness)),
      m_shades(shadesOf(style.colour)),
      m_line(std::size_t(picture.height()) + 2),
      m_faces(m_line.size()) {}

/// What the brush covers here on its way along the curve.
CurveRaster::Span CurveRaster::lineAt(const Heights& curve, int part) const {
    const float* const at = curve.at.data();
    Span span{at[part], at[part]};
    const int reach = int(m_brush.size()) - 1;
    const int from = std::max(part - reach, curve.begin);
    const int to = std::min(part + reach, curve.end - 1);
    for (int near = from; near <= to; ++near) {
        const float half = m_brush[std::size_t(std::abs(near - part))];
        span.top = std::min(span.top, at[near] - half);
        span.bottom = std::max(span.bottom, at[near] + half);
    }
    return span;
}

void CurveRaster::cover(std::vector<float>& steps, Span span) {
    constexpr float kWeight = 1.f / kParts;
    const auto height = float(m_picture.height());
    const float top = std::clamp(span.top, 0.f, height);
    const float bottom = std::clamp(span.bottom, 0.f, height);
    if (bottom <= top)
        return;
    const auto change = [&steps](float y, float by) {
        const auto row = std::size_t(y);
        const float share = y - float(row);
        steps[row] += by * (1 - share);
        steps[row + 1] += by * share;
    };
    change(top, kWeight);
    change(bottom, -kWeight);
    m_first = std::min(m_first, int(top));
    m_last = std::max(m_last, std::min(m_picture.height() - 1, int(bottom)));
}

void CurveRaster::drawColumn(int x, const std::vector<Heights>& curves) {
    const float middle = float(m_picture.height()) / 2;
    for (const Heights& curve : curves) {
        m_first = m_picture.height();
        m_last = -1;
        for (int part = x * kParts; part < (x + 1) * kParts; ++part) {
            if (part < curve.begin || part >= curve.end)
                continue;
            const float y = curve.at[std::size_t(part)];
            cover(m_line, lineAt(curve, part));
            cover(m_faces, {std::min(y, middle), std::max(y, middle)});
        }
        blendColumn(x);
    }
}

void CurveRaster::blendColumn(int x) {
    float line = 0;
    float face = 0;
    const auto stride = m_picture.bytesPerLine() / qsizetype(sizeof(QRgb));
    QRgb* pixel = reinterpret_cast<QRgb*>(m_picture.bits()) + m_first * stride + x;
    for (int row = m_first; row <= m_last; ++row, pixel += stride) {
        line += std::exchange(m_line[std::size_t(row)], 0.f);
        face += std::exchange(m_faces[std::size_t(row)], 0.f);
        // All is of one colour, so only what is seen through matters.
        const float through = (1 - line) * (1 - m_face * face) * (1 - float(qAlpha(*pixel)) / 255);
        *pixel = m_shades[std::size_t(std::clamp(255 * (1 - through) + 0.5f, 0.f, 255.f))];
    }
    // Beyond the last row.
    m_line[std::size_t(m_last + 1)] = m_line[std::size_t(m_last + 2)] = 0;
    m_faces[std::size_t(m_last + 1)] = m_faces[std::size_t(m_last + 2)] = 0;
}

void CurveRaster::draw(const std::vector<Heights>& curves) {
    for (int x = 0; x < m_picture.width(); ++x)
        drawColumn(x, curves);
}
