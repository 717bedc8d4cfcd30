#include "WaveTiles.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "OneFrameFurther.h"
#include "runloop/Clock.h"
#include "runloop/RunLoop.h"

namespace {

constexpr std::int32_t kSpareTiles = 3;    // in the pool
constexpr double kRefreshDelay = 0.00001;  // s: what one turn of the loop asks for is one

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
void WaveTiles::callAfter(double seconds, std::function<void(WaveTiles&)> call) {
    RunLoop::main().callAfter(seconds, [self = std::weak_ptr(m_self), call = std::move(call)] {
        if (const auto there = self.lock())
            call(**there);
    });
}

void WaveTiles::setWave(std::shared_ptr<WaveSequenceAccess> wave) {
    giveUpGathers();
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
    if (width == m_view.width && height == m_height)
        return;
    m_view.width = width;
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
    m_reduceMotion = reduce;
}

void WaveTiles::setViewFromI(std::int32_t start, std::int32_t stop, WaveUpdate update) {
    m_view.start = start;
    m_view.stop = stop;
    moveTiles();
    if (update == WaveUpdate::scroll)
        wrapTiles();
    else if (update == WaveUpdate::refresh || update == WaveUpdate::refreshAgain)
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
    if (!m_wave || !m_refreshNeeded || m_view.width <= 0)
        return;
    m_refreshWaits = m_view.showsFrames() && mustWait();
    if (m_refreshWaits)
        return;
    m_refreshNeeded = false;
    m_cancelledInVain = isGathering();
    giveUpGathers();
    if (!m_view.showsFrames())
        return removeAll();
    supersedeTiles();
    placeStrip();
    m_delegate.tilesChanged();
}

void WaveTiles::giveUpGathers() {
    m_worker->cancelAllTasks();
    for (const Tile& tile : m_gathering)  // also those whose report is on its way
        tile->setBackgroundWorkCancelled(true);
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
    const std::int64_t frames = m_view.span();
    const std::int64_t start = m_view.start;
    m_tiles = m_view.tiles();
    m_firstOfStrip = placeLayerAt(0, StripGeometry::kTileWidth, start, start + frames);
    placeLayerAt(-StripGeometry::kTileWidth, StripGeometry::kTileWidth, start - frames, start);
    for (std::int64_t k = 1; k < m_tiles - 1; ++k)
        placeLayerAt(double(k) * StripGeometry::kTileWidth, StripGeometry::kTileWidth,
                     start + k * frames, start + (k + 1) * frames);
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

WaveTiles::Tile WaveTiles::reusePoolNeedsItem(ReusePool<WaveTileLayer>&) {
    auto tile = std::make_shared<WaveTileLayer>(m_height);
    tile->setDelegate2(this);
    tile->setDrawColour(m_waveColour);
    tile->setBackgroundGradient(m_backgroundGradient);
    return tile;
}

void WaveTiles::wrapTiles() {
    struct Stretch {
        std::int64_t start, stop;
    };
    std::optional<Stretch> due;
    for (const Tile& tile : tilesNamed(WaveTileLayer::normal)) {
        const int strips = StripGeometry::wrap(tile->frame().x, tile->frame().width, m_tiles);
        if (strips == 0)
            continue;
        const std::int64_t frames = std::int64_t{tile->stop()} - tile->start();
        const std::int64_t start = tile->start() + strips * m_tiles * frames;
        due = {start, start + frames};
        tile->setName(WaveTileLayer::removingOutOfSight);
        oldLayerRemoved(tile);
    }
    if (due)
        placeLayerAt(m_view.xOf(due->start), StripGeometry::kTileWidth, due->start, due->stop);
    if (!coversView())  // a leap over more than one tile
        backgroundRefresh();
}

void WaveTiles::moveTiles() {
    if (!m_view.showsFrames())
        return;
    for (const Tile& tile : m_layers)
        tile->setFrame(frameOf(*tile));
}
