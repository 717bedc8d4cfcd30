#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickWindow>
#include <QStyleHints>
#include <utility>

#include "dial/DialGeometry.h"
#include "dial/DialSteps.h"
#include "dial/DialView.h"

namespace {

constexpr int kMouseFinger = -1;        // beside the ids of fingers
constexpr int kHoldMilliseconds = 600;  // of a finger that rests

}  // namespace

// A finger, or the mouse.

void DialView::touchBegan(int finger, QPointF at, quint64 time) {
    m_finger = finger;
    m_bubbleTime.stop();
    m_drag.begin(at, m_position);
    m_taps.pressed(time, at);
    m_isHeld = false;
    if (m_menuOffered)
        m_holdTime.start(kHoldMilliseconds, this);
    setKeepMouseGrab(true);  // no list around it takes the drag away
    setKeepTouchGrab(true);
    forceActiveFocus(Qt::MouseFocusReason);
    setFocusVisible(false);
    showTooltip();
    Q_EMIT pressedChanged();
}

void DialView::touchMoved(QPointF to, bool fine) {
    if (m_drag.isAt(to))
        return;  // told twice, or of a finger that rests while another moves
    m_taps.moved(to);
    if (holds(to))
        return;
    const float dragged =
        DialGeometry::clamped(m_drag.moved(to, m_mode, m_speedRatio, fine, m_position));
    turnTo(fine ? dragged : DialDrag::snapped(dragged, m_notches));
    changedByPlayer();
}

void DialView::setMenuOffered(bool offered) {
    m_menuOffered = offered;
    if (!offered)
        m_holdTime.stop();
    setAcceptedMouseButtons(offered ? Qt::LeftButton | Qt::RightButton : Qt::LeftButton);
}

/// A finger that rests is never quite still.
void DialView::held() {
    m_holdTime.stop();
    m_isHeld = true;
    m_taps.cancel();
    ensureNoTooltip();
    if (m_position != m_drag.touchedValue()) {
        turnTo(m_drag.touchedValue());
        changedByPlayer();
    }
    Q_EMIT menuAsked();
}

/// Whether the finger has been held, and still is; one that goes on turns from there.
bool DialView::holds(QPointF to) {
    const QPointF way = to - m_drag.touchDownAt();
    if (way.manhattanLength() < QGuiApplication::styleHints()->startDragDistance())
        return m_isHeld;
    m_holdTime.stop();
    if (std::exchange(m_isHeld, false)) {
        m_drag.begin(to, m_position);
        showTooltip();
    }
    return false;
}

void DialView::tapEnded() {
    const bool twice = m_taps.released();
    letGo();
    if (twice)
        Q_EMIT doubleTapped();
}

void DialView::touchEnded() {
    if (m_finger)  // the grab of a finger that was lifted is taken away as well
        m_taps.cancel();
    letGo();
}

void DialView::letGo() {
    ensureNoTooltip();
    m_holdTime.stop();
    setKeepMouseGrab(false);
    setKeepTouchGrab(false);
    if (!m_finger)
        return;
    m_finger.reset();
    Q_EMIT pressedChanged();
}

void DialView::touchEvent(QTouchEvent* event) {
    event->accept();
    if (event->type() == QEvent::TouchCancel)
        return touchEnded();
    for (const QEventPoint& point : event->points()) {
        if (!m_finger && point.state() == QEventPoint::Pressed)
            touchBegan(point.id(), point.position(), event->timestamp());
        else if (m_finger != point.id())
            continue;  // one finger turns it
        else if (point.state() == QEventPoint::Updated)
            touchMoved(point.position(), DialSteps::isFine(event->modifiers()));
        else if (point.state() == QEventPoint::Released)
            tapEnded();
    }
}

void DialView::mousePressEvent(QMouseEvent* event) {
    if (m_finger)
        return;
    if (event->button() == Qt::RightButton)
        Q_EMIT menuAsked();
    else
        touchBegan(kMouseFinger, event->position(), event->timestamp());
}

void DialView::mouseMoveEvent(QMouseEvent* event) {
    if (m_finger == kMouseFinger)
        touchMoved(event->position(), DialSteps::isFine(event->modifiers()));
}

void DialView::mouseReleaseEvent(QMouseEvent* event) {
    if (m_finger == kMouseFinger && event->button() == Qt::LeftButton)
        tapEnded();
}

void DialView::mouseUngrabEvent() {
    if (m_finger == kMouseFinger)
        touchEnded();
}

void DialView::wheelEvent(QWheelEvent* event) {
    const float step = DialSteps::ofWheel(*event);
    event->accept();
    if (!m_finger && step != 0)
        stepTo(m_position + step);
}

void DialView::keyPressEvent(QKeyEvent* event) {
    if (m_menuOffered && DialSteps::asksForMenu(*event))
        return Q_EMIT menuAsked();
    const float step = DialSteps::ofKey(*event);
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (step == 0 && !enters)
        return event->ignore();
    setFocusVisible(true);
    if (m_finger)
        return;
    if (step != 0)
        stepTo(m_position + step);
    else if (!event->isAutoRepeat())
        Q_EMIT doubleTapped();
}

void DialView::focusInEvent(QFocusEvent* event) {
    QQuickItem::focusInEvent(event);
    setFocusVisible(event->reason() != Qt::MouseFocusReason);
    Q_EMIT focusVisibleChanged();
}

void DialView::focusOutEvent(QFocusEvent* event) {
    QQuickItem::focusOutEvent(event);
    Q_EMIT focusVisibleChanged();
}

void DialView::setFocusVisible(bool visible) {
    if (visible == m_focusVisible)
        return;
    m_focusVisible = visible;
    Q_EMIT focusVisibleChanged();
}

void DialView::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    const bool leaves = change == ItemSceneChange || change == ItemParentHasChanged ||
                        (change == ItemVisibleHasChanged && !value.boolValue) ||
                        (change == ItemEnabledHasChanged && !value.boolValue);
    if (leaves)
        touchEnded();
    if (change == ItemSceneChange) {
        disconnect(m_windowHidden);
        if (value.window != nullptr)
            m_windowHidden =
                connect(value.window, &QWindow::visibleChanged, this, &DialView::touchEnded);
    }
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        redrawAll();
}
