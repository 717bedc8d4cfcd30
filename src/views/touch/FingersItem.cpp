#include "touch/FingersItem.h"

#include <algorithm>

#include "touch/InputLoss.h"
#include "touch/MouseFinger.h"

FingersItem::FingersItem(QQuickItem* parent) : QQuickItem(parent) {
    setAcceptTouchEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    // What scrolls around the item does not take a drag over.
    setKeepTouchGrab(true);
    setKeepMouseGrab(true);
}

FingersItem::~FingersItem() {
    watch(nullptr);
}

void FingersItem::pressed(int finger, QPointF at, quint64 time) {
    if (std::ranges::find(m_down, finger) != m_down.end())
        return;  // where another finger is beside the item, Qt delivers a press twice
    m_down.push_back(finger);
    fingerPressed(finger, at, time);
}

void FingersItem::released(int finger, quint64 time) {
    if (std::erase(m_down, finger) > 0)
        fingerReleased(finger, time);
}

void FingersItem::cancel() {
    m_down.clear();
    fingersCancelled();
}

void FingersItem::touchEvent(QTouchEvent* event) {
    event->accept();
    m_modifiers = event->modifiers();
    if (event->type() == QEvent::TouchCancel)
        return cancel();
    for (const QEventPoint& point : event->points()) {
        const QPointF at = point.position();
        if (point.state() == QEventPoint::Pressed)
            pressed(point.id(), at, event->timestamp());
        else if (point.state() == QEventPoint::Updated)
            fingerMoved(point.id(), at, event->timestamp());
        else if (point.state() == QEventPoint::Released)
            released(point.id(), event->timestamp());
    }
}

void FingersItem::touchUngrabEvent() {
    // With the last finger lifted this comes as well, and is no loss.
    if (std::ranges::any_of(m_down, [](int finger) { return finger != kMouseFinger; }))
        cancel();
}

void FingersItem::mousePressEvent(QMouseEvent* event) {
    m_modifiers = event->modifiers();
    pressed(kMouseFinger, event->position(), event->timestamp());
}

void FingersItem::mouseDoubleClickEvent(QMouseEvent* event) {
    pressed(kMouseFinger, event->position(), event->timestamp());
}

void FingersItem::mouseMoveEvent(QMouseEvent* event) {
    m_modifiers = event->modifiers();
    fingerMoved(kMouseFinger, event->position(), event->timestamp());
}

void FingersItem::mouseReleaseEvent(QMouseEvent* event) {
    released(kMouseFinger, event->timestamp());
}

void FingersItem::mouseUngrabEvent() {
    if (std::ranges::find(m_down, kMouseFinger) != m_down.end())
        cancel();
}

void FingersItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange)
        watch(data.window);
    if (change == ItemSceneChange || change == ItemVisibleHasChanged ||
        change == ItemEnabledHasChanged)
        cancel();
}

void FingersItem::watch(QQuickWindow* window) {
    if (m_watched)
        m_watched->removeEventFilter(this);
    m_watched = window;
    if (window)
        window->installEventFilter(this);
}

bool FingersItem::eventFilter(QObject*, QEvent* event) {
    const auto type = event->type();
    if (losesInput(*event, *m_watched))
        cancel();
    else if (type == QEvent::TouchBegin || type == QEvent::TouchUpdate || type == QEvent::TouchEnd)
        cancelLost(*static_cast<QTouchEvent*>(event));
    return false;
}

/// A touch event of the window names every finger that is on the screen: one that it does not name
/// has gone without a word.
void FingersItem::cancelLost(const QTouchEvent& event) {
    const auto isLost = [&](int finger) {
        return finger != kMouseFinger &&
               std::ranges::none_of(event.points(), [&](const auto& point) {
                   return point.id() == finger && point.state() != QEventPoint::Pressed;
               });
    };
    if (std::ranges::any_of(m_down, isLost))
        cancel();
}
