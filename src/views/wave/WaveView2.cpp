#include "wave/WaveView2.h"

#include <QNativeGestureEvent>
#include <QQuickWindow>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "keyboard/PixelScale.h"
#include "wave/WaveCurve.h"

namespace {

constexpr int kRefreshPace = 120;        // milliseconds from one to the next while zooming
constexpr double kFurthestScroll = 512;  // points that tiles follow in one step
constexpr double kWheelZoom = M_SQRT2;   // for one notch
constexpr double kWheelNotch = 120;      // in eighths of a degree
constexpr double kWheelScroll = 0.1;     // of the width for one notch
constexpr double kKeyScroll = 0.1;       // of the width
constexpr double kKeyZoom = M_SQRT2;
constexpr double kHeadWidth = 1;  // points
constexpr double kPlayHeadWidth = 2;
constexpr double kUnknownRate = 44100;  // frames per second
constexpr float kGutterOpacity = 0.2f;

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

// Fingers.

void WaveView2::fingerPressed(int finger, QPointF at, quint64 time) {
    forceActiveFocus(Qt::MouseFocusReason);
    setFocusVisible(false);
    m_gestures.pressed(finger, at, time);
    if (m_gestures.awaitsHold())
        m_hold.start(WaveGestures::kHold, this);
    else
        m_hold.stop();
}

void WaveView2::fingerMoved(int finger, QPointF to, quint64 time) {
    m_gestures.moved(finger, to, time);
    if (!m_gestures.awaitsHold())
        m_hold.stop();
}

void WaveView2::fingerReleased(int finger, quint64 time) {
    m_gestures.released(finger, time);
    m_hold.stop();
}

void WaveView2::fingersCancelled() {
    m_hold.stop();
    m_gestures.cancel();
}

void WaveView2::dropped(bool) {
    runClock();
}

void WaveView2::tapped(double x) {
    if (m_hearing && may(scrub) && m_sound)
        m_hearing->playFrom(frameAt(x));
}

void WaveView2::doubleTapped() {
    if (m_hearing && may(scrub))
        m_hearing->stop();
    if (may(zoomAndScroll))
        showAll();
}

void WaveView2::scrubbed(double x) {
    if (m_hearing && m_sound)
        m_hearing->scrubTo(frameAt(x));
}

void WaveView2::scrubEnded() {
    if (m_hearing)
        m_hearing->endScrub();
}

// Wheel, trackpad and keys.

void WaveView2::wheelEvent(QWheelEvent* event) {
    if (!may(zoomAndScroll))
        return event->ignore();
    const QPointF turn = QPointF(event->angleDelta()) / kWheelNotch;
    const bool sideways = std::abs(turn.x()) > std::abs(turn.y());
    if (sideways || event->modifiers().testFlag(Qt::ShiftModifier))
        scrollBy(-(sideways ? turn.x() : turn.y()) * kWheelScroll * width());
    else if (turn.y() != 0)
        zoomed(event->position().x(), std::pow(kWheelZoom, turn.y()));
}

bool WaveView2::event(QEvent* event) {
    if (event->type() != QEvent::NativeGesture || !may(zoomAndScroll))
        return FingersItem::event(event);
    const auto& gesture = static_cast<const QNativeGestureEvent&>(*event);
    if (gesture.gestureType() == Qt::ZoomNativeGesture)
        zoomed(gesture.position().x(), 1 + gesture.value());
    return true;
}

void WaveView2::keyPressEvent(QKeyEvent* event) {
    if (!may(zoomAndScroll))
        return event->ignore();
    switch (event->key()) {
        case Qt::Key_Left:
            scrollBy(-kKeyScroll * width());
            break;
        case Qt::Key_Right:
            scrollBy(kKeyScroll * width());
            break;
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            zoomBy(kKeyZoom);
            break;
        case Qt::Key_Minus:
            zoomBy(1 / kKeyZoom);
            break;
        case Qt::Key_Home:
            showAll();
            break;
        default:
            return event->ignore();
    }
    setFocusVisible(true);
}

void WaveView2::focusInEvent(QFocusEvent* event) {
    FingersItem::focusInEvent(event);
    m_focusVisible = event->reason() != Qt::MouseFocusReason;
    Q_EMIT focusVisibleChanged();
}

void WaveView2::focusOutEvent(QFocusEvent* event) {
    FingersItem::focusOutEvent(event);
    Q_EMIT focusVisibleChanged();
}

void WaveView2::setFocusVisible(bool visible) {
    if (visible == m_focusVisible)
        return;
    m_focusVisible = visible;
    Q_EMIT focusVisibleChanged();
}

// How it is drawn.

void WaveView2::geometryChange(const QRectF& now, const QRectF& before) {
    FingersItem::geometryChange(now, before);
    if (now.size() == before.size())
        return;
    m_ruler->setPosition({0, waveHeight()});
    m_ruler->setSize({width(), std::min(height(), WaveRuler::kHeight)});
    m_viewport.setWidth(width());
    m_tiles.setBounds(width(), waveHeight());
    rangeChanged(WaveUpdate::refresh);
    Q_EMIT waveHeightChanged();
}

void WaveView2::itemChange(ItemChange change, const ItemChangeData& data) {
    FingersItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged)
        runClock();
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
        m_tiles.backgroundRefresh();
        m_curveStale = true;
        polish();
        update();
    }
}

void WaveView2::updatePolish() {
    m_pictures.draw(m_tiles, m_viewport, pixelScale(*this));
    if (std::exchange(m_curveStale, false))
        refreshCurve();
}

void WaveView2::refreshCurve() {
    const bool seen = m_sound && WaveCurve::isSeenIn(m_viewport) && waveHeight() > 0;
    m_curveFresh = m_curveFresh || seen || !m_curve.isNull();
    m_curve = seen ? WaveCurve::of(*m_sound, m_viewport,
                                   {m_waveColour, m_sampleColour, waveHeight(), pixelScale(*this)})
                   : QImage();
}

QSGNode* WaveView2::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* const node = old ? static_cast<WaveViewNode*>(old) : new WaveViewNode(*window());
    const QRectF wave(0, 0, width(), waveHeight());
    const double middle = std::floor(waveHeight() / 2);
    const auto tiles = m_pictures.shown(m_tiles, m_viewport, waveHeight(), pixelScale(*this));
    node->showBackground(wave, m_backgroundTop, m_backgroundBottom);
    node->showTiles(tiles);
    node->showGutter({0, 0, 1, waveHeight()}, QColor::fromRgbF(0, 0, 0, kGutterOpacity));
    node->showCentre({0, middle, width(), 1}, m_lineColour);
    node->showCurve(m_curve, wave, std::exchange(m_curveFresh, false) || !old);
    node->showLines(lines(), waveHeight());
    return node;
}

std::vector<UprightLine> WaveView2::lines() const {
    std::vector<UprightLine> lines;
    const auto add = [&](double frame, double lineWidth, const QColor& colour) {
        const double x = m_viewport.xOf(frame);
        if (x >= 0 && x <= width())
            lines.push_back({x, lineWidth, colour});
    };
    for (const float head : m_heads)
        add(double(head), kHeadWidth, m_headColour);
    if (m_hearing && m_hearing->playHead() >= 0)
        add(m_hearing->playHead(), kPlayHeadWidth, m_playHeadColour);
    return lines;
}
