#pragma once

#include <QImage>
#include <QPainterPath>
#include <QSizeF>

/// How a popup bubble looks: a rounded body above an arrow that points down, glossy, with a soft
/// shadow. Lengths are points, in the bubble's own coordinates.
namespace BubbleShape {

inline constexpr qreal kBodyHeight = 38;
inline constexpr qreal kArrowHalfWidth = 8;

/// What the shadow needs outside the bubble, on every side: three times its radius, and its fall.
inline constexpr int kShadowMargin = 11;

/// The outline for a width; the tip of the arrow is at (width / 2 + shift, 46).
QPainterPath outline(qreal width, qreal shift = 0);

/// The bubble with its shadow, `kShadowMargin` larger on every side, for a screen of that scale.
QImage picture(QSizeF size, qreal scale, qreal shift = 0);

}  // namespace BubbleShape
