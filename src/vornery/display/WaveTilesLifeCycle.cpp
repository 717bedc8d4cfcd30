// The strip of tiles: how they come in, and how the old ones go.
#include <algorithm>
#include <iterator>

#include "WaveTiles.h"
#include "runloop/Clock.h"

namespace {

constexpr double kFadeSeconds = 0.5;
constexpr double kRemovalSeconds = 0.6;  // when those that came in have faded in
constexpr double kGivenUpSeconds = 3.0;  // without being drawn

}  // namespace

void WaveTiles::task(BackgroundWorker&, const std::shared_ptr<BackgroundWorkerTask>& task,
                     bool finished) {
    const auto tile = std::static_pointer_cast<WaveTileLayer>(task);
    std::erase(m_gathering, tile);
    m_cancelledInVain = m_cancelledInVain && isGathering();
    if (finished) {
        tile->setName(WaveTileLayer::pendingRender);
        tile->setPendingSince(Clock::now());
        waveTileRegenerated(tile);
    } else {
        tile->setName(WaveTileLayer::removingOutOfDate);
        recycle(tile);
    }
    if (m_refreshWaits)
        performBackgroundRefresh();
}

void WaveTiles::waveTileRegenerated(const Tile& tile) {
    if (!m_view.showsFrames())
        return recycle(tile);
    tile->setFrame(frameOf(*tile));
    m_layers.push_back(tile);
    tile->setNeedsDisplay();
    m_delegate.tilesChanged();
}

void WaveTiles::waveTilefinishedRendering(WaveTileLayer& tile) {
    const bool isNew = tile.name() == WaveTileLayer::pendingRender;
    if (!isNew && !tile.isRegularLayer())
        return;
    tile.setName(WaveTileLayer::normal);
    if (isNew)
        tile.setFade({0, 1, m_takenOverFade.value_or(Clock::monotonic()),
                      m_reduceMotion ? 0 : kFadeSeconds});
    tile.setHidden(false);
    if (tile.contentId() < m_firstOfStrip)
        tile.markOutOfDate();  // superseded while it waited to be drawn
    removeOldLayers();
    if (m_refreshWaits)
        performBackgroundRefresh();
    m_delegate.tilesChanged();
}

void WaveTiles::removeOldLayers() {
    if (isGathering())
        return;
    for (const Tile& tile : tilesNamed(WaveTileLayer::pendingRender)) {
        // One that was drawn just now only waits for its notice.
        if (!tile->needsDisplay() || Clock::now() - tile->pendingSince() < kGivenUpSeconds)
            return;
        tile->markOutOfDate();
        backgroundRefresh();  // another one takes its place
    }
    if (std::int64_t(m_layers.size()) < m_tiles)
        return;
    for (const Tile& tile : tilesNamed(WaveTileLayer::outOfDate)) {
        tile->setName(WaveTileLayer::removingOutOfDate);
        if (m_takenOverFade && tile->fade().start >= *m_takenOverFade)
            oldLayerRemoved(tile);
        else
            removeAfterFade(tile);
    }
    m_takenOverFade.reset();
}

/// The tile may have been taken away, and placed anew, before.
void WaveTiles::removeAfterFade(const Tile& tile) {
    const auto remove = [removed = std::weak_ptr(tile), id = tile->contentId()](WaveTiles& self) {
        const Tile old = removed.lock();
        if (old && old->contentId() == id && old->name() == WaveTileLayer::removingOutOfDate)
            self.oldLayerRemoved(old);
    };
    callAfter(m_reduceMotion ? 0 : kRemovalSeconds, remove);
}

void WaveTiles::oldLayerRemoved(const Tile& tile) {
    tile->setFade({});
    tile->setHidden(true);
    std::erase(m_layers, tile);
    recycle(tile);
    m_delegate.tilesChanged();
}

void WaveTiles::removeAll() {
    m_refreshNeeded = m_refreshWaits = m_cancelledInVain = false;
    for (const Tile& tile : std::vector(m_layers)) {
        tile->setName(WaveTileLayer::removingOutOfDate);
        oldLayerRemoved(tile);
    }
    m_delegate.tilesChanged();
}

/// A spare tile keeps no sound alive.
void WaveTiles::recycle(const Tile& tile) {
    tile->setWave(nullptr);
    tile->setDelegate2(nullptr);
    if (tile->boundsHeight() == m_height && tile->drawColour() == m_waveColour &&
        tile->backgroundGradient() == m_backgroundGradient)
        m_layerPool.putIfWanted(tile);
}

std::vector<WaveTiles::Tile> WaveTiles::tilesNamed(const char* name) const {
    std::vector<Tile> tiles;
    std::ranges::copy_if(m_layers, std::back_inserter(tiles),
                         [&](const Tile& tile) { return tile->name() == name; });
    return tiles;
}

/// Whether something is being gathered that is still wanted.
bool WaveTiles::isGathering() const {
    return !std::ranges::all_of(m_gathering, &WaveTileLayer::backgroundWorkCancelled,
                                [](const Tile& tile) -> const WaveTileLayer& { return *tile; });
}

bool WaveTiles::isCrowded() const {
    constexpr std::size_t kUncrowdedStrips = 2;
    return m_layers.size() > kUncrowdedStrips * std::size_t(m_tiles);
}

TileFrame WaveTiles::frameOf(const WaveTileLayer& tile) const {
    const double x = m_view.xOf(tile.start());
    return {x, tile.frame().y, m_view.xOf(tile.stop()) - x, m_height};
}

bool WaveTiles::coversView() const {
    struct Stretch {
        std::int32_t start, stop;
    };
    std::vector<Stretch> wanted;
    for (const Tile& tile : m_layers)
        if (tile->contentId() >= m_firstOfStrip &&
            (tile->isRegularLayer() || tile->name() == WaveTileLayer::pendingRender))
            wanted.push_back({tile->start(), tile->stop()});
    for (const Tile& tile : m_gathering)
        if (!tile->backgroundWorkCancelled())
            wanted.push_back({tile->start(), tile->stop()});
    std::ranges::sort(wanted, {}, &Stretch::start);
    std::int32_t covered = m_view.start;
    for (const Stretch& stretch : wanted)
        if (stretch.start <= covered)
            covered = std::max(covered, stretch.stop);
    return covered >= m_view.stop;
}

bool WaveTiles::animating() const {
    const double now = Clock::monotonic();
    return std::ranges::any_of(m_layers, [now](const Tile& tile) {
        return !tile->hidden() && tile->fade().isUnderWay(now);
    });
}

bool WaveTiles::complete() const {
    return m_wave && !m_refreshNeeded && !isGathering() && coversView() &&
           tilesNamed(WaveTileLayer::pendingRender).empty();
}
