#include "StripGeometry.h"

#include <algorithm>
#include <cmath>

namespace {

// Points: a tile that ends left of the one, or of three begins right of the other, comes in again.
constexpr double kWrapLeft = -512;
constexpr double kWrapRight = 1536;
// Points that a strip of more than three reaches beyond the view, and that one of three may lack.
constexpr double kSpare = 256;
constexpr double kLacking = 64;

}  // namespace

std::int64_t StripGeometry::span() const {
    const double shown = double(std::int64_t{stop} - start);
    return std::max<std::int64_t>(std::int64_t(shown * kTileWidth / width), 1);
}

/// As many as still cover the view when all but one of them reach no further left than where a
/// tile comes in again. Three do up to 1536 points, but for what whole frames fall short of them;
/// wider views have some to spare, so that the one that comes in is there before it is seen.
std::int64_t StripGeometry::tiles() const {
    const double tileWidth = double(span()) * pointsPerFrame();
    const double reach = width - kWrapLeft + (width > kWrapRight ? kSpare : -kLacking);
    return std::max(kLeastTiles, 1 + std::int64_t(std::ceil(reach / tileWidth)));
}

int StripGeometry::wrap(double x, double tileWidth, std::int64_t tiles) {
    if (x + tileWidth < kWrapLeft)
        return 1;
    return x > kWrapRight + double(tiles - kLeastTiles) * tileWidth ? -1 : 0;
}
