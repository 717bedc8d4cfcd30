#include <QNativeGestureEvent>
#include <cmath>

#include "wave/WaveView2.h"

namespace {

constexpr double kWheelZoom = M_SQRT2;  // for one notch
constexpr double kWheelNotch = 120;     // in eighths of a degree
constexpr double kWheelScroll = 0.1;    // of the width for one notch
constexpr double kKeyScroll = 0.1;      // of the width
constexpr double kKeyZoom = M_SQRT2;

}  // namespace

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
