#include "touch/OneFingerItem.h"

#include <QQuickWindow>

#include "touch/MouseFinger.h"

OneFingerItem::OneFingerItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAcceptTouchEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    // What scrolls around the item does not take a drag over.
    setKeepTouchGrab(true);
    setKeepMouseGrab(true);
}

void OneFingerItem::began(int finger, QPointF at) {
    if (m_finger)
        return;
    m_finger = finger;
    touchBegan(at);
}

void OneFingerItem::moved(int finger, QPointF at) {
    if (m_finger == finger)
        touchMoved(at);
}

void OneFingerItem::ended(int finger) {
    if (m_finger != finger)
        return;
    m_finger.reset();
    touchEnded();
}

void OneFingerItem::cancel() {
    if (!m_finger)
        return;
    m_finger.reset();
    touchCancelled();
}

void OneFingerItem::touchEvent(QTouchEvent* event) {
    if (event->type() == QEvent::TouchCancel)
        return cancel();
    for (const QEventPoint& point : event->points()) {
        if (point.state() == QEventPoint::Pressed)
            began(point.id(), point.position());
        else if (point.state() == QEventPoint::Updated)
            moved(point.id(), point.position());
        else if (point.state() == QEventPoint::Released)
            ended(point.id());
    }
}

void OneFingerItem::touchUngrabEvent() {
    if (m_finger != kMouseFinger)
        cancel();
}

void OneFingerItem::mousePressEvent(QMouseEvent* event) {
    began(kMouseFinger, event->position());
}

void OneFingerItem::mouseMoveEvent(QMouseEvent* event) {
    moved(kMouseFinger, event->position());
}

void OneFingerItem::mouseReleaseEvent(QMouseEvent*) {
    ended(kMouseFinger);
}

void OneFingerItem::mouseUngrabEvent() {
    if (m_finger == kMouseFinger)
        cancel();
}

void OneFingerItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickPaintedItem::itemChange(change, data);
    if (change == ItemSceneChange)
        followWindow(data.window);
    else if (change == ItemVisibleHasChanged || change == ItemEnabledHasChanged)
        cancel();
}

void OneFingerItem::followWindow(QQuickWindow* window) {
    cancel();
    disconnect(m_windowShown);
    if (window)
        m_windowShown = connect(window, &QWindow::visibleChanged, this, [this] { cancel(); });
}
