#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickWindow>
#include <QStyleHints>
#include <utility>

#include "dial/DialGeometry.h"
#include "dial/DialSteps.h"
#include "dial/DialView.h"

namespace {

constexpr int kHoldMilliseconds = 600;  // of a finger that rests

}  // namespace

// A finger, or the mouse.

void DialView::fingerPressed(int finger, QPointF at, quint64 time) {
    if (m_finger)
        return;  // one finger turns it
    m_finger = finger;
    m_bubbleTime.stop();
    m_drag.begin(at, m_position);
    m_taps.pressed(time, at);
    m_isHeld = false;
    if (m_menuOffered)
        m_holdTime.start(kHoldMilliseconds, this);
    forceActiveFocus(Qt::MouseFocusReason);
    setFocusVisible(false);
    showTooltip();
    Q_EMIT pressedChanged();
}

void DialView::fingerMoved(int finger, QPointF to, quint64) {
    if (m_finger != finger || m_drag.isAt(to))
        return;  // told twice, or of a finger that rests while another moves
    m_taps.moved(to);
    if (holds(to))
        return;
    const bool fine = DialSteps::isFine(modifiers());
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

void DialView::fingerReleased(int finger, quint64) {
    if (m_finger != finger)
        return;
    const bool twice = m_taps.released();
    letGo();
    if (twice)
        Q_EMIT doubleTapped();
}

void DialView::fingersCancelled() {
    if (m_finger)  // the grab of a finger that was lifted is taken away as well
        m_taps.cancel();
    letGo();
}

void DialView::letGo() {
    ensureNoTooltip();
    m_holdTime.stop();
    if (!m_finger)
        return;
    m_finger.reset();
    Q_EMIT pressedChanged();
}

void DialView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::RightButton)
        FingersItem::mousePressEvent(event);
    else if (!m_finger)
        Q_EMIT menuAsked();
}

void DialView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        FingersItem::mouseReleaseEvent(event);
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

void DialView::itemChange(ItemChange change, const ItemChangeData& data) {
    FingersItem::itemChange(change, data);
    if (change == ItemParentHasChanged)
        fingersCancelled();
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        redrawAll();
}
