#include "WaveTileLayer.h"

#include <algorithm>

#include "PeakGathering.h"
#include "runloop/RunLoop.h"

namespace {

std::atomic<int> theLiveTiles{0};
std::atomic<std::uint64_t> theContents{0};

}  // namespace

const char* const WaveTileLayer::freshlyMade = "Freshly Made";
const char* const WaveTileLayer::pendingGather = "Pending Gather";
const char* const WaveTileLayer::pendingRender = "Pending Render";
const char* const WaveTileLayer::normal = "Normal";
const char* const WaveTileLayer::outOfDate = "Out Of Date";
const char* const WaveTileLayer::removingOutOfSight = "Removing [os]";
const char* const WaveTileLayer::removingOutOfDate = "Removing [ood]";

WaveTileLayer::WaveTileLayer(double boundsHeight)
    : m_boundsHeight(boundsHeight), m_frame{0, 0, kColumns, boundsHeight} {
    ++theLiveTiles;
}

WaveTileLayer::WaveTileLayer(const WaveTileLayer& shown)
    : BackgroundWorkerCancellableTask(),
      std::enable_shared_from_this<WaveTileLayer>(),
      m_theDrawColour(shown.m_theDrawColour),
      m_backgroundGradient(shown.m_backgroundGradient),
      m_delegate2(shown.m_delegate2),
      m_start(shown.m_start),
      m_stop(shown.m_stop),
      m_wave(shown.wave()),
      m_peaks(shown.m_peaks),
      m_pokes(shown.m_pokes),
      m_boundsHeight(shown.m_boundsHeight),
      m_frame(shown.m_frame),
      m_contentId(++theContents) {
    ++theLiveTiles;
}

WaveTileLayer::~WaveTileLayer() {
    --theLiveTiles;
}

int WaveTileLayer::liveTiles() {
    return theLiveTiles;
}

void WaveTileLayer::markOutOfDate() {
    m_name = outOfDate;
    setBackgroundWorkCancelled(true);
}

void WaveTileLayer::setBackgroundGradient(const std::optional<TileGradient>& gradient) {
    m_backgroundGradient = gradient;
}

void WaveTileLayer::setStretch(std::int32_t start, std::int32_t stop) {
    m_start = start;
    m_stop = stop;
    m_contentId = ++theContents;
}

std::shared_ptr<WaveSequenceAccess> WaveTileLayer::wave() const {
    const std::lock_guard lock(m_waveMutex);
    return m_wave;
}

void WaveTileLayer::setWave(std::shared_ptr<WaveSequenceAccess> wave) {
    std::shared_ptr<WaveSequenceAccess> read;  // both are let go of outside the lock
    const std::lock_guard lock(m_waveMutex);
    m_wave.swap(wave);
    if (!m_isReading)
        m_read.swap(read);
}

void WaveTileLayer::gatherPeaks() {
    const float hairline = 1.f / float(std::max(m_boundsHeight, 1.0));
    m_peaks.fill(hairline);
    m_pokes.fill(-hairline);
    const std::int64_t span = std::int64_t{m_stop} - m_start;
    if (m_stop < 1 || span < 1)
        return;
    const WaveSequenceAccess* const sound = beginReading();
    if (sound && !backgroundWorkCancelled())
        gatherFrom(*sound, span);
    endReading();
}

/// The sound, which is kept where the main thread lets go of it.
const WaveSequenceAccess* WaveTileLayer::beginReading() {
    const std::lock_guard lock(m_waveMutex);
    m_isReading = true;
    if (m_wave)
        m_read = m_wave;
    return m_wave.get();
}

void WaveTileLayer::endReading() {
    const std::lock_guard lock(m_waveMutex);
    m_isReading = false;
}

void WaveTileLayer::gatherFrom(const WaveSequenceAccess& sound, std::int64_t span) {
    const std::int64_t offset = std::max<std::int64_t>(-std::int64_t{m_start}, 0);
    auto count = std::uint32_t(span - offset);
    const WaveWindowList windows =
        sound.retrieveWindowsAt(std::uint32_t(std::max(m_start, 0)), &count);
    if (!windows || !windows[0].data)
        return;
    PeakGathering gathering(m_peaks, m_pokes, *this);
    if (span >= kColumns)
        gathering.decimate(windows.get(), span, offset, count);
    else
        gathering.interpolate(windows.get(), span);
}

void WaveTileLayer::drawInContext(TileContext& context) {
    if (isOutOfDate()) {
        m_needsDisplay = false;
        return;
    }
    drawColumns(context);
    renderingDone();
}

void WaveTileLayer::drawColumns(TileContext& context) const {
    if (m_backgroundGradient)
        context.drawGradient(*m_backgroundGradient, m_boundsHeight);
    context.setFillColour(m_theDrawColour);
    constexpr double kFarOutside = 1e6;  // so that infinite samples have a finite rectangle
    const double middle = context.clipHeight() / 2;
    for (std::size_t k = 0; k < m_peaks.size(); ++k) {
        const double peak = std::clamp<double>(m_peaks[k], -kFarOutside, kFarOutside);
        const double poke = std::clamp<double>(m_pokes[k], -kFarOutside, kFarOutside);
        double top = middle - middle * peak;
        double height = middle * (peak - poke);
        if (top < 0) {
            height += top;
            top = 0;
        }
        height = std::min(height, m_boundsHeight - top);
        context.fillRect(double(k), top, 1, std::max(height, 0.0));
    }
}

void WaveTileLayer::renderingDone() {
    m_needsDisplay = false;
    RunLoop::main().callAfter(0, [tile = weak_from_this(), id = m_contentId] {
        const auto drawn = tile.lock();
        if (drawn && drawn->m_contentId == id && drawn->m_delegate2)
            drawn->m_delegate2->waveTilefinishedRendering(*drawn);
    });
}
