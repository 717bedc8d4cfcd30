#include "dial/DialDrag.h"

#include <cmath>

namespace {

constexpr float kNear = 0.03f - 1e-6f;  // what is 0.03 away but for rounding is not near

}  // namespace

void DialDrag::begin(QPointF at, float position) {
    m_touchDownAt = at;
    m_last = at;
    m_touchedValue = position;
    m_fine = false;
}

float DialDrag::moved(QPointF at, std::int32_t mode, float speedRatio, bool fine, float shown) {
    if (fine != m_fine) {
        begin(m_last, shown);
        m_fine = fine;
    }
    m_last = at;
    const float speed = fine ? speedRatio * kFineTurn : speedRatio;
    float position = m_touchedValue;
    if ((mode & kHorizontal) != 0)
        position += (float(at.x()) - float(m_touchDownAt.x())) * speed;
    if ((mode & kVertical) != 0)
        position -= (float(at.y()) - float(m_touchDownAt.y())) * speed;
    return position;
}

float DialDrag::snapped(float position, std::span<const float> notches) {
    for (const float notch : notches) {
        if (std::fabs(notch - position) < kNear)
            return notch;
    }
    return position;
}
