#include "dial/DialGeometry.h"

#include <cmath>

namespace {

/// In radians from straight up, to the left.
float angleAt(float position) {
    return DialGeometry::kHalfSweep * (1.f - position) - DialGeometry::kHalfSweep * position;
}

}  // namespace

float DialGeometry::clamped(float position) {
    return position > 0.f ? (position < 1.f ? position : 1.f) : 0.f;
}

QPointF DialGeometry::onArc(QPointF centre, float position, float radius) {
    const float angle = angleAt(position);
    return {float(centre.x()) - radius * std::sin(angle),
            float(centre.y()) - radius * std::cos(angle)};
}

QPointF DialGeometry::notchCentre(QPointF centre, float position, float radius, qreal screenScale) {
    if (screenScale >= 2)
        return onArc(centre, position, radius);
    const float angle = angleAt(position);
    return {float(centre.x()) + (std::trunc(-radius * std::sin(angle)) + 0.5f),
            float(centre.y()) + (std::trunc(-radius * std::cos(angle)) - 0.5f)};
}

float DialGeometry::lampPlace(quint32 index, quint32 count) {
    return count > 1 ? float(index) / float(count - 1) : 0.f;
}

float DialGeometry::lampAlpha(quint32 index, quint32 count, float position) {
    const float filled = float(count) * position;
    const auto full = static_cast<quint32>(filled);
    if (index < full)
        return 1.f;
    return index == full ? filled - float(full) : 0.f;
}
