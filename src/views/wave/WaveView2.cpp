#include "wave/WaveView2.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr int kRefreshPace = 120;        // milliseconds from one to the next while zooming
constexpr double kFurthestScroll = 512;  // points that tiles follow in one step
constexpr double kUnknownRate = 44100;   // frames per second

TileColour tileColour(const QColor& colour) {
    return {colour.redF(), colour.greenF(), colour.blueF(), colour.alphaF()};
}

std::int32_t framesOf(const WaveSequenceAccess* sound) {
    constexpr std::uint32_t kMost = std::numeric_limits<std::int32_t>::max() / 4;
    return sound ? std::int32_t(std::min(sound->sampleCount(), kMost)) : 0;
}

double rateOf(const WaveSequenceAccess* sound) {
    const StreamDescription* const description = sound ? sound->audioDescription() : nullptr;
    return description && description->mSampleRate > 0 ? description->mSampleRate : kUnknownRate;
}

}  // namespace

WaveView2::WaveView2(QQuickItem* parent)
    : FingersItem(parent),
      m_ruler(new WaveRuler(this)),
      m_clock([this](double seconds) { tick(seconds); }),
      m_tiles(*this) {
    setFlag(ItemHasContents);
    setClip(true);
    setActiveFocusOnTab(true);
    connect(this, &WaveView2::coloursChanged, this, &WaveView2::applyColours);
    applyColours();
}

WaveView2::~WaveView2() {
    m_gestures.cancel();
}

// What is shown.

void WaveView2::setWave(WaveState* wave) {
    if (wave == m_wave)
        return;
    if (m_wave)
        m_wave->disconnect(this);
    m_wave = wave;
    if (wave) {
        connect(wave, &WaveState::waveChanged, this, [this] { show(m_wave->wave()); });
        connect(wave, &WaveState::waveEdited, this, [this] { show(m_wave->wave(), true); });
    }
    show(wave ? wave->wave() : nullptr);
    Q_EMIT waveChanged();
}

void WaveView2::setVoices(VoicesState* voices) {
    if (voices == m_voices)
        return;
    if (m_voices)
        m_voices->disconnect(this);
    m_voices = voices;
    if (voices)
        connect(voices, &VoicesState::soundingChanged, this, &WaveView2::runClock);
    runClock();
    Q_EMIT voicesChanged();
}

void WaveView2::setHearing(WaveHearing* hearing) {
    if (hearing == m_hearing)
        return;
    m_gestures.cancel();
    if (m_hearing)
        m_hearing->disconnect(this);
    m_hearing = hearing;
    if (hearing)
        connect(hearing, &WaveHearing::playHeadChanged, this, &QQuickItem::update);
    update();
    Q_EMIT hearingChanged();
}

void WaveView2::setInteractions(int interactions) {
    if (interactions == m_interactions)
        return;
    m_interactions = interactions;
    m_gestures.cancel();
    m_gestures.setMayScroll(may(zoomAndScroll));
    m_gestures.setMayScrub(may(scrub));
    Q_EMIT interactionsChanged();
}

void WaveView2::setMotion(bool motion) {
    if (motion == m_motion)
        return;
    m_motion = motion;
    m_tiles.setReduceMotion(!motion);
    Q_EMIT motionChanged();
}

void WaveView2::show(std::shared_ptr<WaveSequenceAccess> sound, bool sameStretch) {
    m_gestures.cancel();
    m_sound = std::move(sound);
    const std::int32_t frames = framesOf(m_sound.get());
    m_tiles.setWave(frames > 0 ? m_sound : nullptr);
    sameStretch ? m_viewport.changeLength(frames) : m_viewport.setLength(frames);
    rangeChanged(WaveUpdate::refresh);
}

void WaveView2::applyColours() {
    m_tiles.setWaveColour(tileColour(m_waveColour));
    m_tiles.setBackgroundGradient(
        TileGradient{tileColour(m_backgroundTop), tileColour(m_backgroundBottom)});
    m_ruler->setColours(m_backgroundBottom, m_lineColour, m_labelColour);
    m_curveStale = true;
    m_tiles.backgroundRefresh();
    polish();
    update();
}

qreal WaveView2::waveHeight() const {
    return std::max(0., height() - WaveRuler::kHeight);
}

// Which stretch of it.

int WaveView2::frameAt(double x) const {
    return int(std::lround(m_viewport.frameAt(x)));
}

void WaveView2::setViewFrom(int from, int to, int update) {
    const double before = m_viewport.framesPerPoint();
    m_viewport.show(from, to);
    const bool scrolls = update == int(WaveUpdate::scroll);
    const bool sameScale = m_viewport.framesPerPoint() == before;
    rangeChanged(scrolls && !sameScale ? WaveUpdate::refresh : WaveUpdate(update));
}

void WaveView2::showAll() {
    m_gestures.fling().stop();
    m_viewport.showAll();
    rangeChanged(WaveUpdate::refresh);
}

void WaveView2::zoomBy(double factor) {
    zoomed(width() / 2, factor);
}

void WaveView2::scrollBy(double points) {
    m_gestures.fling().stop();
    scrolled(-points);
}

void WaveView2::scrolled(double points) {
    m_viewport.scrollBy(points);
    rangeChanged(WaveUpdate::scroll);
}

/// While it goes on tiles are made anew now and then, and once more behind its end.
void WaveView2::zoomed(double about, double factor) {
    m_gestures.fling().stop();
    m_viewport.zoomAbout(about, factor);
    m_scaleWaits = m_refreshSoon.isActive();
    rangeChanged(m_scaleWaits ? WaveUpdate::stretch : WaveUpdate::refresh);
    if (!m_refreshSoon.isActive())
        m_refreshSoon.start(kRefreshPace, this);
}

void WaveView2::rangeChanged(WaveUpdate update) {
    const double way = m_viewport.start() - m_tiles.viewStartIndex();
    const bool moved = way != 0 || m_viewport.stop() != m_tiles.viewStopIndex();
    if (update == WaveUpdate::scroll && m_scaleWaits)
        update = WaveUpdate::stretch;
    else if (update == WaveUpdate::scroll &&
             std::abs(way) > kFurthestScroll * m_viewport.framesPerPoint())
        update = WaveUpdate::refresh;
    if (moved || update == WaveUpdate::refresh || update == WaveUpdate::refreshAgain)
        m_tiles.setViewFromI(m_viewport.start(), m_viewport.stop(), update);
    m_curveStale = true;
    m_ruler->show(m_viewport, rateOf(m_sound.get()));
    polish();
    this->update();
    runClock();
    Q_EMIT viewChanged();
}

void WaveView2::didReceiveMemoryWarning() {
    m_tiles.didReceiveMemoryWarning();
}

// What moves by itself.

void WaveView2::tilesChanged() {
    polish();
    update();
    runClock();
}

void WaveView2::runClock() {
    const bool sounds = m_voices && m_voices->sounding();
    const bool moves = m_gestures.fling().flying() || m_tiles.animating() || sounds;
    m_clock.run(moves && isVisible());
    if (!sounds && !m_heads.isEmpty()) {
        m_heads.clear();
        update();
    }
}

void WaveView2::tick(double seconds) {
    Fling& fling = m_gestures.fling();
    if (fling.flying()) {
        if (!m_viewport.scrollBy(fling.step(seconds)))
            fling.stop();
        rangeChanged(WaveUpdate::scroll);
    }
    if (m_tiles.animating())
        update();
    showHeads();
    runClock();
}

void WaveView2::showHeads() {
    if (!m_voices || !m_voices->sounding())
        return;
    const QList<float> heads = m_voices->headsNow();
    if (heads == m_heads)
        return;
    m_heads = heads;
    update();
}

void WaveView2::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_hold.timerId()) {
        m_hold.stop();
        m_gestures.held();
    } else if (event->timerId() == m_refreshSoon.timerId()) {
        if (std::exchange(m_scaleWaits, false))
            m_tiles.backgroundRefresh();
        else
            m_refreshSoon.stop();
    } else {
        FingersItem::timerEvent(event);
    }
}
