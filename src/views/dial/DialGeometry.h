#pragma once

#include <QPointF>
#include <QtGlobal>

/// Where the parts of a dial are: an arc of 270 degrees, clockwise from the lower left at position
/// 0 over the top to the lower right at position 1. Single precision throughout; lengths are
/// points, y grows downwards. [any thread]
namespace DialGeometry {

/// From straight up to either end of the arc, in radians.
inline constexpr float kHalfSweep = float(1.57079632679489661923) + float(0.785398163397448309616);

/// Within [0, 1]; what is not above 0, NaN too, is 0.
float clamped(float position);

/// The point at `position` on the arc around a centre.
QPointF onArc(QPointF centre, float position, float radius);

/// As `onArc`, but on the pixel grid of screens of a scale below 2.
QPointF notchCentre(QPointF centre, float position, float radius, qreal screenScale);

/// Where lamp `index` of `count` stands on the arc, in [0, 1].
float lampPlace(quint32 index, quint32 count);

/// How lit it is, in [0, 1]: they fill one after the other, the last one fading in.
float lampAlpha(quint32 index, quint32 count, float position);

}  // namespace DialGeometry
