#include "take/HoldButton.h"

#include <QQuickWindow>

#include "touch/InputLoss.h"

namespace {

bool holds(const QKeyEvent& event) {
    return event.key() == Qt::Key_Space || event.key() == Qt::Key_Return ||
           event.key() == Qt::Key_Enter;
}

}  // namespace

HoldButton::HoldButton(QQuickItem* parent) : QQuickItem(parent) {
    setAcceptTouchEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    setActiveFocusOnTab(true);
    setKeepTouchGrab(true);
    setKeepMouseGrab(true);
}

void HoldButton::hold(Holder holder) {
    if (m_holder)
        return;
    m_holder = holder;
    Q_EMIT heldChanged();
    Q_EMIT pressed();
}

void HoldButton::release(Holder holder) {
    if (m_holder == holder)
        letGo();
}

void HoldButton::letGo() {
    if (!m_holder)
        return;
    m_holder.reset();
    Q_EMIT heldChanged();
    Q_EMIT released();
}

void HoldButton::touchEvent(QTouchEvent* event) {
    if (event->type() == QEvent::TouchCancel)
        return touchUngrabEvent();
    for (const QEventPoint& point : event->points()) {
        if (point.state() == QEventPoint::Pressed)
            hold({Holder::Kind::finger, point.id()});
        else if (point.state() == QEventPoint::Released)
            release({Holder::Kind::finger, point.id()});
    }
}

void HoldButton::touchUngrabEvent() {
    if (heldBy(Holder::Kind::finger))
        letGo();
}

void HoldButton::mousePressEvent(QMouseEvent*) {
    hold({Holder::Kind::mouse});
}

void HoldButton::mouseReleaseEvent(QMouseEvent*) {
    release({Holder::Kind::mouse});
}

void HoldButton::mouseUngrabEvent() {
    release({Holder::Kind::mouse});
}

void HoldButton::keyPressEvent(QKeyEvent* event) {
    event->setAccepted(holds(*event));
    if (holds(*event) && !event->isAutoRepeat())
        hold({Holder::Kind::key, event->key()});
}

void HoldButton::keyReleaseEvent(QKeyEvent* event) {
    event->setAccepted(holds(*event));
    if (!event->isAutoRepeat())
        release({Holder::Kind::key, event->key()});
}

void HoldButton::focusOutEvent(QFocusEvent* event) {
    QQuickItem::focusOutEvent(event);
    if (heldBy(Holder::Kind::key))
        letGo();
}

void HoldButton::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged || change == ItemEnabledHasChanged)
        letGo();
    if (change != ItemSceneChange)
        return;
    letGo();
    if (m_watched)
        m_watched->removeEventFilter(this);
    m_watched = data.window;
    if (m_watched)
        m_watched->installEventFilter(this);
}

bool HoldButton::eventFilter(QObject* watched, QEvent* event) {
    if (losesInput(*event, *m_watched))
        letGo();
    return QQuickItem::eventFilter(watched, event);
}
