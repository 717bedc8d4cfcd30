#include "bubbles/Shadow.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

/// Mean of the `2 * reach + 1` values around each one; there are none beyond the ends.
void average(const std::vector<int>& from, std::vector<int>& to, int reach) {
    const int count = int(from.size());
    int sum = 0;
    for (int i = 0; i < std::min(reach, count); ++i)
        sum += from[std::size_t(i)];
    for (int i = 0; i < count; ++i) {
        sum += i + reach < count ? from[std::size_t(i + reach)] : 0;
        to[std::size_t(i)] = sum / (2 * reach + 1);
        sum -= i >= reach ? from[std::size_t(i - reach)] : 0;
    }
}

/// Three boxes in a row are within 3 % of a Gaussian (W. M. Wells, "Efficient Synthesis of Gaussian
/// Filters by Cascaded Uniform Filters", 1986).
void blur(uchar* first, int count, qsizetype stride, int reach) {
    std::vector<int> line(std::size_t(std::max(count, 0)));
    std::vector<int> next(line.size());
    for (int i = 0; i < count; ++i)
        line[std::size_t(i)] = first[i * stride] << 8;  // fractions survive three roundings
    for (int pass = 0; pass < 3; ++pass) {
        average(line, next, reach);
        line.swap(next);
    }
    for (int i = 0; i < count; ++i)
        first[i * stride] = uchar(line[std::size_t(i)] >> 8);
}

}  // namespace

QImage Shadow::blurred(const QImage& picture, qreal deviation) {
    // The variance of three boxes of width w is (w * w - 1) / 4.
    const int reach = int(std::lround((std::sqrt(4 * deviation * deviation + 1) - 1) / 2));
    QImage alpha = picture.convertToFormat(QImage::Format_Alpha8);
    for (int y = 0; y < alpha.height(); ++y)
        blur(alpha.scanLine(y), alpha.width(), 1, reach);
    for (int x = 0; x < alpha.width(); ++x)
        blur(alpha.bits() + x, alpha.height(), alpha.bytesPerLine(), reach);
    return alpha.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}
