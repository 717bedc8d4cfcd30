#include "dial/DoubleTap.h"

#include <QGuiApplication>
#include <QStyleHints>

namespace {

bool isNear(QPointF a, QPointF b) {
    constexpr qreal kSlop = 10;  // a finger rolls a little
    return (a - b).manhattanLength() <= kSlop;
}

}  // namespace

void DoubleTap::pressed(quint64 time, QPointF at) {
    const auto interval = quint64(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    m_second = m_hasFirst && time - m_pressTime <= interval && isNear(at, m_pressAt);
    m_still = true;
    m_pressTime = time;
    m_pressAt = at;
}

void DoubleTap::moved(QPointF to) {
    m_still = m_still && isNear(to, m_pressAt);
}

bool DoubleTap::released() {
    const bool tapped = m_still;
    m_hasFirst = tapped && !m_second;
    m_still = false;
    return tapped && m_second;
}

void DoubleTap::cancel() {
    m_still = false;
    m_hasFirst = false;
}
