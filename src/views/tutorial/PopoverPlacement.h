#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

/// Where a popover lies beside the thing that it points at: above it if there is room, else below,
/// else to its left or right, always within bounds. All in the same coordinates, in points.
struct PopoverPlacement {
    enum Side { above, below, left, right };

    QRectF frame;
    Side side = above;
    /// Of the arrow, between the popover and what it points at.
    QPointF tip;

    static constexpr double kArrow = 10;   // from the tip to the popover
    static constexpr double kMargin = 8;   // to the bounds
    static constexpr double kCorner = 20;  // the arrow keeps this far from the popover's corners

    static PopoverPlacement beside(const QRectF& anchor, QSizeF size, const QRectF& bounds);
};
