#include "wave/WaveGestures.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double kNarrowest = 24;  // points between two fingers: closer ones tell no scale
constexpr double kNear = 3 * WaveGestures::kSlop;  // points between the two of a double tap

double length(QPointF vector) {
    return std::hypot(vector.x(), vector.y());
}

}  // namespace

WaveGestures::Fingers::iterator WaveGestures::find(int id) {
    return std::ranges::find(m_fingers, id, &Finger::id);
}

double WaveGestures::distance() const {
    return std::max(kNarrowest, length(m_fingers[0].at - m_fingers[1].at));
}

void WaveGestures::pressed(int finger, QPointF at, quint64 time) {
    if (find(finger) != m_fingers.end())
        return;
    m_fingers.push_back({finger, at, at});
    if (m_fingers.size() == 1) {
        m_caught = m_fling.flying();
        m_second = m_tapped && time - m_tapTime <= kDoubleTap && length(at - m_tapAt) <= kNear;
        m_tapped = false;
        m_pressTime = time;
        m_doing = Doing::nothingYet;
        m_fling.begin(time, at.x());
    } else if (m_fingers.size() == 2 && m_doing != Doing::scrubbing) {
        m_doing = m_mayScroll ? Doing::pinching : Doing::ignoring;
    }
}

void WaveGestures::moved(int finger, QPointF to, quint64 time) {
    const auto found = find(finger);
    if (found == m_fingers.end() || found->at == to)
        return;
    const bool pinches = m_doing == Doing::pinching && found - m_fingers.begin() < 2;
    const QPointF middleBefore = pinches ? middle() : QPointF();
    const double distanceBefore = pinches ? distance() : 0;
    const QPointF before = std::exchange(found->at, to);
    if (pinches)
        return pinch(middleBefore, distanceBefore);
    if (found != m_fingers.begin())
        return;
    if (m_doing == Doing::nothingYet && length(to - found->began) > kSlop) {
        m_doing = m_mayScroll ? Doing::scrolling : Doing::ignoring;
        return scroll(*found, found->began, time);
    }
    if (m_doing == Doing::scrubbing)
        m_delegate.scrubbed(to.x());
    else
        scroll(*found, before, time);
}

void WaveGestures::scroll(const Finger& finger, QPointF before, quint64 time) {
    if (m_doing != Doing::scrolling)
        return;
    m_fling.moved(time, finger.at.x());
    m_delegate.scrolled(finger.at.x() - before.x());
}

void WaveGestures::pinch(QPointF middleBefore, double distanceBefore) {
    const double factor = distance() / distanceBefore;
    if (factor != 1)
        m_delegate.zoomed(middleBefore.x(), factor);
    if (middle().x() != middleBefore.x())
        m_delegate.scrolled(middle().x() - middleBefore.x());
}

void WaveGestures::released(int finger, quint64 time) {
    const auto found = find(finger);
    if (found == m_fingers.end())
        return;
    const bool first = found == m_fingers.begin();
    const bool pinched = m_doing == Doing::pinching && found - m_fingers.begin() < 2;
    const QPointF began = found->began;
    m_fingers.erase(found);
    if (m_doing == Doing::nothingYet) {
        tap(began, time);
    } else if (m_doing == Doing::scrubbing && first) {
        m_doing = Doing::ignoring;
        m_delegate.scrubEnded();
    } else if (pinched && m_fingers.size() == 1) {
        m_doing = Doing::scrolling;
        m_fling.begin(time, m_fingers[0].at.x());
    } else if (m_doing == Doing::scrolling && m_fingers.empty()) {
        m_delegate.dropped(m_fling.release(time));
    }
    if (m_fingers.empty())
        m_doing = Doing::resting;
}

void WaveGestures::tap(QPointF at, quint64 time) {
    if (m_caught || time - m_pressTime > kHold)
        return;
    if (m_second)
        return m_delegate.doubleTapped();
    m_tapped = true;
    m_tapTime = time;
    m_tapAt = at;
    m_delegate.tapped(at.x());
}

void WaveGestures::held() {
    if (!awaitsHold())
        return;
    m_doing = Doing::scrubbing;
    m_delegate.scrubbed(m_fingers.front().at.x());
}

void WaveGestures::cancel() {
    const Doing was = std::exchange(m_doing, Doing::resting);
    m_fingers.clear();
    m_tapped = false;
    m_fling.stop();
    if (was == Doing::scrubbing)
        m_delegate.scrubEnded();
    else if (was == Doing::scrolling || was == Doing::pinching)
        m_delegate.dropped(false);
}
