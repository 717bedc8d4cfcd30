#pragma once

#include <QQuickItem>
#include <QQuickWindow>

/// Pixels in one point of an item, as its window shows it now; the scene may be scaled as a whole.
inline qreal pixelScale(const QQuickItem& item) {
    const QPointF across = item.mapToScene({1, 0}) - item.mapToScene({0, 0});
    const qreal ratio = item.window() ? item.window()->effectiveDevicePixelRatio() : 1;
    return ratio * across.x();
}
