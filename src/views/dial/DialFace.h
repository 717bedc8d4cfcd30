#pragma once

#include <QImage>
#include <QList>
#include <QPointF>

namespace DialFace {

/// What never moves on a dial, as one picture: its face with an unlit lamp at each of the points,
/// which are those of a dial of that size in points. Null where artwork is missing.
QImage picture(QSizeF size, qreal scale, const QImage& face, const QImage& unlitLamp,
               const QList<QPointF>& lamps);

}  // namespace DialFace
