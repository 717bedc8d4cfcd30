#include "tutorial/PopoverPlacement.h"

#include <algorithm>

namespace {

using Side = PopoverPlacement::Side;

/// Like std::clamp, for bounds that may leave no room: then the low one counts.
double within(double value, double low, double high) {
    return std::max(low, std::min(value, high));
}

Side roomiest(const QRectF& anchor, QSizeF size, const QRectF& inner) {
    const double tall = size.height() + PopoverPlacement::kArrow;
    const double wide = size.width() + PopoverPlacement::kArrow;
    if (anchor.top() - inner.top() >= tall)
        return PopoverPlacement::above;
    if (inner.bottom() - anchor.bottom() >= tall)
        return PopoverPlacement::below;
    if (anchor.left() - inner.left() >= wide)
        return PopoverPlacement::left;
    return inner.right() - anchor.right() >= wide ? PopoverPlacement::right
                                                  : PopoverPlacement::above;
}

QPointF tipAt(Side side, const QRectF& anchor) {
    switch (side) {
        case PopoverPlacement::below:
            return {anchor.center().x(), anchor.bottom()};
        case PopoverPlacement::left:
            return {anchor.left(), anchor.center().y()};
        case PopoverPlacement::right:
            return {anchor.right(), anchor.center().y()};
        default:
            return {anchor.center().x(), anchor.top()};
    }
}

QPointF cornerAt(Side side, QPointF tip, QSizeF size) {
    constexpr double arrow = PopoverPlacement::kArrow;
    switch (side) {
        case PopoverPlacement::below:
            return {tip.x() - size.width() / 2, tip.y() + arrow};
        case PopoverPlacement::left:
            return {tip.x() - arrow - size.width(), tip.y() - size.height() / 2};
        case PopoverPlacement::right:
            return {tip.x() + arrow, tip.y() - size.height() / 2};
        default:
            return {tip.x() - size.width() / 2, tip.y() - arrow - size.height()};
    }
}

}  // namespace

PopoverPlacement PopoverPlacement::beside(const QRectF& anchor, QSizeF size, const QRectF& bounds) {
    const QRectF inner = bounds.adjusted(kMargin, kMargin, -kMargin, -kMargin);
    const Side side = roomiest(anchor, size, inner);
    QPointF tip = tipAt(side, anchor);
    QPointF corner = cornerAt(side, tip, size);
    corner.setX(within(corner.x(), inner.left(), inner.right() - size.width()));
    corner.setY(within(corner.y(), inner.top(), inner.bottom() - size.height()));
    const QRectF frame(corner, size);
    if (side == above || side == below)
        tip = {within(tip.x(), frame.left() + kCorner, frame.right() - kCorner),
               side == above ? frame.bottom() + kArrow : frame.top() - kArrow};
    else
        tip = {side == left ? frame.right() + kArrow : frame.left() - kArrow,
               within(tip.y(), frame.top() + kCorner, frame.bottom() - kCorner)};
    return {frame, side, tip};
}
