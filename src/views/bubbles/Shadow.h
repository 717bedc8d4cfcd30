#pragma once

#include <QImage>

namespace Shadow {

/// The black shadow of a picture, blurred by a near Gaussian of that standard deviation, in pixels.
/// What would fall outside is lost, so leave three deviations of room. The time taken does not
/// depend on the deviation.
QImage blurred(const QImage& picture, qreal deviation);

}  // namespace Shadow
