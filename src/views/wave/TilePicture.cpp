#include "wave/TilePicture.h"

#include <algorithm>
#include <cmath>

namespace {

QRgb premultiplied(const TileColour& colour, double coverage) {
    const double alpha = 255 * coverage * double(colour.alpha);
    const auto part = [alpha](float share) { return int(std::lround(alpha * double(share))); };
    return qRgba(part(colour.red), part(colour.green), part(colour.blue), int(std::lround(alpha)));
}

TileColour mixed(const TileColour& a, const TileColour& b, float share) {
    const auto mix = [share](float x, float y) { return x + (y - x) * share; };
    return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue), mix(a.alpha, b.alpha)};
}

QRgb over(QRgb above, QRgb below) {
    const int left = 255 - qAlpha(above);
    const auto sum = [left](int a, int b) { return a + (b * left + 127) / 255; };
    return qRgba(sum(qRed(above), qRed(below)), sum(qGreen(above), qGreen(below)),
                 sum(qBlue(above), qBlue(below)), sum(qAlpha(above), qAlpha(below)));
}

}  // namespace

TilePicture::TilePicture(double height, double scale)
    : m_height(height),
      m_scale(scale),
      m_image(WaveTileLayer::kColumns, std::max(1, int(std::lround(height * scale))),
              QImage::Format_ARGB32_Premultiplied) {
    m_image.fill(Qt::transparent);
    m_pixels = reinterpret_cast<QRgb*>(m_image.bits());
}

void TilePicture::drawGradient(const TileGradient& gradient, double height) {
    for (int y = 0; y < m_image.height(); ++y) {
        const double share = std::clamp((y + 0.5) / (height * m_scale), 0., 1.);
        const QRgb colour = premultiplied(mixed(gradient.top, gradient.bottom, float(share)), 1);
        std::fill_n(row(y), m_image.width(), colour);
    }
    if (gradient.top.alpha >= 1 && gradient.bottom.alpha >= 1)
        m_image.reinterpretAsFormat(QImage::Format_RGB32);
}

void TilePicture::setFillColour(const TileColour& colour) {
    m_colour = colour;
    m_filled = premultiplied(colour, 1);
}

void TilePicture::blend(QRgb& pixel, double coverage) const {
    pixel = over(premultiplied(m_colour, coverage), pixel);
}

/// Columns lie on whole pixels; only the ends of each are soft.
void TilePicture::fillRect(double x, double y, double width, double height) {
    const int left = std::clamp(int(x), 0, m_image.width());
    const int right = std::clamp(int(std::ceil(x + width)), left, m_image.width());
    const double top = std::max(0., y * m_scale);
    const double bottom = std::min(double(m_image.height()), (y + height) * m_scale);
    if (!(bottom > top))
        return;
    const int first = int(top);
    const int last = std::min(m_image.height() - 1, int(bottom));
    for (int column = left; column < right; ++column) {
        for (int line = first; line <= last; ++line) {
            const double coverage = std::min(bottom, line + 1.) - std::max(top, double(line));
            if (coverage >= 1 && qAlpha(m_filled) == 255)
                row(line)[column] = m_filled;
            else if (coverage > 0)
                blend(row(line)[column], coverage);
        }
    }
}
