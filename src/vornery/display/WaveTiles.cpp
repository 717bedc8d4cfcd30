#include "WaveTiles.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "OneFrameFurther.h"
#include "runloop/Clock.h"
#include "runloop/RunLoop.h"

namespace {

constexpr double kTileWidth = 1024;        // points
constexpr double kWrapLeft = -512;         // points; a tile that ends left of it comes in again
constexpr double kWrapRight = 1536;        // and one of three that begins right of this
constexpr double kSparePoints = 256;       // of a wide strip, beyond the view
constexpr double kLackingPoints = 64;      // at the most, of a strip of three
constexpr std::int64_t kLeastTiles = 3;    // of a strip
constexpr std::int32_t kSpareTiles = 3;    // in the pool
constexpr double kRefreshDelay = 0.00001;  // s: what one turn of the loop asks for is one
constexpr double kFadeSeconds = 0.5;
constexpr double kRemovalSeconds = 0.6;  // after the fade of those that came in over it
constexpr double kGivenUpSeconds = 3.0;  // without being drawn
constexpr std::size_t kUncrowdedStrips = 2;

std::int32_t frameIndex(std::int64_t frame) {
    using Limits = std::numeric_limits<std::int32_t>;
    return std::int32_t(std::clamp<std::int64_t>(frame, Limits::min(), Limits::max()));
}

}  // namespace

WaveTiles::WaveTiles(WaveTilesDelegate& delegate)
    : m_delegate(delegate),
      m_layerPool(*this),
      m_self(std::make_shared<WaveTiles*>(this)),
      m_worker(std::make_unique<BackgroundWorker>()) {
    m_layerPool.setWantedThreshold(kSpareTiles);
    m_worker->setDelegate(this);
}

WaveTiles::~WaveTiles() {
    m_worker->setDelegate(nullptr);
    m_worker->shutdown();
    m_worker.reset();
    for (const auto* tiles : {&m_layers, &m_gathering})
        for (const Tile& tile : *tiles)
            tile->setDelegate2(nullptr);
}

/// Nothing is called once this is gone.
template <typename Call>
void WaveTiles::callAfter(double seconds, Call call) {
    RunLoop::main().callAfter(seconds, [self = std::weak_ptr(m_self), call] {
        if (const auto there = self.lock())
            call(**there);
    });
}

void WaveTiles::setWave(std::shared_ptr<WaveSequenceAccess> wave) {
    m_worker->cancelAllTasks();
    m_wave = wave ? std::make_shared<OneFrameFurther>(std::move(wave)) : nullptr;
    if (!m_wave)
        return removeAll();
    // What was never seen of the one before never will be.
    for (const Tile& tile : tilesNamed(WaveTileLayer::pendingRender)) {
        tile->setName(WaveTileLayer::removingOutOfDate);
        oldLayerRemoved(tile);
    }
    backgroundRefresh();
}

void WaveTiles::setBounds(double width, double height) {
    if (width == m_width && height == m_height)
        return;
    m_width = width;
    m_height = height;
    m_layerPool.flush();  // spare tiles keep their own height
    moveTiles();
    backgroundRefresh();
    m_delegate.tilesChanged();
}

void WaveTiles::setWaveColour(const TileColour& colour) {
    m_waveColour = colour;
    m_layerPool.flush();
    backgroundRefresh();
}

void WaveTiles::setBackgroundGradient(const std::optional<TileGradient>& gradient) {
    m_backgroundGradient = gradient;
    m_layerPool.flush();
    backgroundRefresh();
}

void WaveTiles::setReduceMotion(bool reduce) {
    m_fadeSeconds = reduce ? 0 : kFadeSeconds;
}

void WaveTiles::setViewFromI(std::int32_t start, std::int32_t stop, WaveUpdate update) {
    m_viewStartIndex = start;
    m_viewStopIndex = stop;
    moveTiles();
    if (update == WaveUpdate::scroll)
        wrapTiles();
    else if (update != WaveUpdate::stretch)
        backgroundRefresh();
    m_delegate.tilesChanged();
}

void WaveTiles::didReceiveMemoryWarning() {
    m_layerPool.flush();
}

void WaveTiles::backgroundRefresh() {
    m_refreshNeeded = true;
    if (std::exchange(m_isScheduled, true))
        return;
    callAfter(kRefreshDelay, [](WaveTiles& self) {
        self.m_isScheduled = false;
        self.performBackgroundRefresh();
    });
}

void WaveTiles::performBackgroundRefresh() {
    if (!m_wave || !m_refreshNeeded || m_width <= 0)
        return;
    m_refreshWaits = showsFrames() && mustWait();
    if (m_refreshWaits)
        return;
    m_refreshNeeded = false;
    m_cancelledInVain = isGathering();
    m_worker->cancelAllTasks();
    for (const Tile& tile : m_gathering)  // also those whose report is on its way
        tile->setBackgroundWorkCancelled(true);
    if (!showsFrames())
        return removeAll();
    supersedeTiles();
    placeStrip();
    m_delegate.tilesChanged();
}

/// What is being gathered is given up for something newer only once in a row, so that some of what
/// is asked for gets through; and while much is shown already, the newest strip comes in first.
bool WaveTiles::mustWait() const {
    if (m_gathering.size() >= 2 * std::size_t(m_tiles))
        return true;
    if (!isCrowded())
        return m_cancelledInVain && isGathering();
    return isGathering() || !tilesNamed(WaveTileLayer::pendingRender).empty();
}

void WaveTiles::supersedeTiles() {
    const double now = Clock::monotonic();
    m_takenOverFade.reset();
    for (const Tile& tile : m_layers) {
        if (tile->isRegularLayer())
            tile->markOutOfDate();
        if (isCrowded() && tile->isOutOfDate() && tile->fade().isUnderWay(now))
            m_takenOverFade = std::min(m_takenOverFade.value_or(now), tile->fade().start);
    }
}

void WaveTiles::placeStrip() {
    const std::int64_t frames = span();
    const std::int64_t start = m_viewStartIndex;
    m_tiles = tilesFor(frames);
    m_firstOfStrip = placeLayerAt(0, kTileWidth, start, start + frames);
    placeLayerAt(-kTileWidth, kTileWidth, start - frames, start);
    for (std::int64_t k = 1; k < m_tiles - 1; ++k)
        placeLayerAt(double(k) * kTileWidth, kTileWidth, start + k * frames,
                     start + (k + 1) * frames);
}

/// Returns the number of what the tile will show.
std::uint64_t WaveTiles::placeLayerAt(double x, double width, std::int64_t from, std::int64_t to) {
    const Tile tile = m_layerPool.take();
    tile->setStretch(frameIndex(from), frameIndex(to));
    tile->setName(WaveTileLayer::pendingGather);
    tile->setFade({});
    tile->setFrame({x, 0, width, tile->boundsHeight()});
    tile->setDelegate2(this);
    tile->setWave(m_wave);
    m_gathering.push_back(tile);
    m_worker->addTask(tile);
    return tile->contentId();
}

WaveTiles::Tile WaveTiles::reusePoolNeedsItem() {
    auto tile = std::make_shared<WaveTileLayer>(m_height);
    tile->setDelegate2(this);
    tile->setDrawColour(m_waveColour);
    tile->setBackgroundGradient(m_backgroundGradient);
    return tile;
}

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
    if (!showsFrames())
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
        tile.setFade({0, 1, m_takenOverFade.value_or(Clock::monotonic()), m_fadeSeconds});
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
    callAfter(m_fadeSeconds > 0 ? kRemovalSeconds : 0, remove);
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

void WaveTiles::wrapTiles() {
    struct Stretch {
        std::int64_t start, stop;
    };
    std::optional<Stretch> due;
    for (const Tile& tile : tilesNamed(WaveTileLayer::normal)) {
        const TileFrame& frame = tile->frame();
        const bool isLeft = frame.x + frame.width < kWrapLeft;
        if (!isLeft && frame.x <= kWrapRight + double(m_tiles - kLeastTiles) * frame.width)
            continue;
        const std::int64_t frames = std::int64_t{tile->stop()} - tile->start();
        const std::int64_t start = tile->start() + (isLeft ? m_tiles : -m_tiles) * frames;
        due = {start, start + frames};
        tile->setName(WaveTileLayer::removingOutOfSight);
        oldLayerRemoved(tile);
    }
    if (due)
        placeLayerAt(double(due->start - m_viewStartIndex) * pointsPerFrame(), kTileWidth,
                     due->start, due->stop);
    if (!coversView())  // a leap over more than one tile
        backgroundRefresh();
}

void WaveTiles::moveTiles() {
    if (!showsFrames())
        return;
    for (const Tile& tile : m_layers)
        tile->setFrame(frameOf(*tile));
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
    return m_layers.size() > kUncrowdedStrips * std::size_t(m_tiles);
}

double WaveTiles::pointsPerFrame() const {
    return m_width / double(std::int64_t{m_viewStopIndex} - m_viewStartIndex);
}

TileFrame WaveTiles::frameOf(const WaveTileLayer& tile) const {
    const double scale = pointsPerFrame();
    return {double(std::int64_t{tile.start()} - m_viewStartIndex) * scale, tile.frame().y,
            double(std::int64_t{tile.stop()} - tile.start()) * scale, m_height};
}

/// Frames of a tile of the present scale.
std::int64_t WaveTiles::span() const {
    const double shown = double(std::int64_t{m_viewStopIndex} - m_viewStartIndex);
    return std::max<std::int64_t>(std::int64_t(shown * kTileWidth / m_width), 1);
}

/// As many as still cover the view when all but one of them reach no further left than where a
/// tile comes in again. Three do up to 1536 points, but for what whole frames fall short of them;
/// wider views have some to spare, so that the one that comes in is there before it is seen.
std::int64_t WaveTiles::tilesFor(std::int64_t frames) const {
    const double tileWidth = double(frames) * pointsPerFrame();
    const double spare = m_width > kWrapRight ? kSparePoints : -kLackingPoints;
    const double others = std::ceil((m_width + spare - kWrapLeft) / tileWidth);
    return std::max(kLeastTiles, 1 + std::int64_t(others));
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
    std::int32_t covered = m_viewStartIndex;
    for (const Stretch& stretch : wanted)
        if (stretch.start <= covered)
            covered = std::max(covered, stretch.stop);
    return covered >= m_viewStopIndex;
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
