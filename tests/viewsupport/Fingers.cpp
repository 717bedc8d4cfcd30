#include "Fingers.h"

#include <qpa/qwindowsysteminterface.h>
#include <QTest>

namespace {

QPointingDevice* touchScreen() {
    static QPointingDevice* const device = QTest::createTouchDevice();
    return device;
}

}  // namespace

void Fingers::move(const std::map<int, QPoint>& fingers) {
    std::map<int, Change> changes;
    for (const auto& [finger, to] : fingers)
        changes[finger] = {QEventPoint::Updated, to};
    send(changes);
}

void Fingers::send(const std::map<int, Change>& changes) {
    auto sequence = QTest::touchEvent(&m_window, touchScreen(), false);
    for (const auto& [finger, at] : m_down) {
        if (!changes.contains(finger))
            sequence.move(finger, at, &m_window);  // a fresh sequence knows no resting fingers
    }
    for (const auto& [finger, change] : changes) {
        m_down[finger] = change.at;
        if (change.state == QEventPoint::Pressed)
            sequence.press(finger, change.at, &m_window);
        else if (change.state == QEventPoint::Updated)
            sequence.move(finger, change.at, &m_window);
        else
            sequence.release(finger, change.at, &m_window);
    }
    sequence.commit();
    for (const auto& [finger, change] : changes) {
        if (change.state == QEventPoint::Released)
            m_down.erase(finger);
    }
}

void Fingers::cancel() {
    m_down.clear();
    QWindowSystemInterface::handleTouchCancelEvent<QWindowSystemInterface::SynchronousDelivery>(
        &m_window, touchScreen());
}
