#include "wave/TilePictures.h"

#include <algorithm>
#include <cmath>

#include "runloop/Clock.h"
#include "wave/TilePicture.h"

namespace {

// Taller ones are stretched: what a screenful of them takes is bounded.
constexpr double kMostRows = 1024;
constexpr double kFarOutside = 4096;  // points; what is stretched beyond it is cut off first

double onPixel(double points, double scale) {
    return std::round(points * scale) / scale;
}

/// Cut to what lies in the view, so that no renderer meets numbers beyond its own.
void cut(ShownTile& tile, double width) {
    const QRectF whole = tile.rect;
    const double left = std::max(0., whole.left());
    const double right = std::min(width, whole.right());
    const double each = tile.source.width() / whole.width();
    tile.rect.setLeft(left);
    tile.rect.setRight(right);
    tile.source.setLeft((left - whole.left()) * each);
    tile.source.setWidth((right - left) * each);
}

/// Tiles above it that are done and opaque leave nothing of it to be seen.
bool isCovered(const ShownTile& tile, std::vector<ShownTile>::const_iterator above,
               std::vector<ShownTile>::const_iterator end, double width) {
    double from = std::max(0., tile.rect.left());
    const double to = std::min(width, tile.rect.right());
    for (bool further = true; further && from < to;) {
        further = false;
        for (auto other = above; other != end; ++other) {
            const bool hides = other->opacity >= 1 && !other->picture.hasAlphaChannel();
            if (hides && other->rect.left() <= from && other->rect.right() > from) {
                from = other->rect.right();
                further = true;
            }
        }
    }
    return from >= to;
}

}  // namespace

void TilePictures::drawOne(WaveTileLayer& tile, double scale) {
    const double height = tile.boundsHeight();
    TilePicture picture(height, std::min(scale, kMostRows / std::max(1., height)));
    tile.drawInContext(picture);
    if (!tile.isOutOfDate())
        m_kept[&tile] = {tile.contentId(), picture.image()};
}

void TilePictures::forgetGone(const WaveTiles& tiles) {
    const auto& layers = tiles.layers();
    std::erase_if(m_kept, [&](const auto& kept) {
        return std::ranges::none_of(layers,
                                    [&](const auto& tile) { return tile.get() == kept.first; });
    });
}

void TilePictures::draw(const WaveTiles& tiles, const WaveViewport& viewport, double scale) {
    forgetGone(tiles);
    for (const auto& tile : tiles.layers()) {
        const auto kept = m_kept.find(tile.get());
        const bool isKept = kept != m_kept.end() && kept->second.content == tile->contentId();
        const bool isSeen =
            viewport.xOf(tile->stop()) > 0 && viewport.xOf(tile->start()) < viewport.width();
        const bool isWanted = tile->needsDisplay() || tile->isRegularLayer();
        if (isSeen && !isKept && isWanted && !tile->isOutOfDate())
            drawOne(*tile, scale);
        else if (tile->needsDisplay())
            tile->renderingDone();
    }
    boundMemory(tiles);
}

void TilePictures::boundMemory(const WaveTiles& tiles) {
    for (const auto& tile : tiles.layers()) {
        if (size() <= kMostMemory)
            return;
        if (!tile->isRegularLayer() && !tile->needsDisplay())
            m_kept.erase(tile.get());
    }
}

std::vector<ShownTile> TilePictures::shown(const WaveTiles& tiles, const WaveViewport& viewport,
                                           double height, double scale) const {
    const double now = Clock::monotonic();
    std::vector<ShownTile> all;
    for (const auto& tile : tiles.layers()) {
        const auto kept = m_kept.find(tile.get());
        const double opacity = tile->opacityAt(now);
        const bool isKept = kept != m_kept.end() && kept->second.content == tile->contentId();
        if (!isKept || tile->hidden() || opacity <= 0)
            continue;
        const double left = onPixel(viewport.xOf(tile->start()), scale);
        const double right = onPixel(viewport.xOf(tile->stop()), scale);
        if (right <= 0 || left >= viewport.width() || right <= left)
            continue;
        const QImage& picture = kept->second.picture;
        ShownTile shown{tile.get(),
                        kept->second.content,
                        picture,
                        QRectF(left, 0, right - left, height),
                        QRectF({}, QSizeF(picture.size())),
                        opacity};
        if (shown.rect.width() > kFarOutside)
            cut(shown, viewport.width());
        all.push_back(std::move(shown));
    }
    for (auto tile = all.begin(); tile != all.end();) {
        const bool covered = isCovered(*tile, tile + 1, all.end(), viewport.width());
        tile = covered ? all.erase(tile) : tile + 1;
    }
    return all;
}

std::size_t TilePictures::size() const {
    std::size_t bytes = 0;
    for (const auto& [tile, kept] : m_kept)
        bytes += std::size_t(kept.picture.sizeInBytes());
    return bytes;
}
