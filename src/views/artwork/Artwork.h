#pragma once

#include <QImage>
#include <QSizeF>
#include <QString>

/// The pictures that controls are made of, by their names ("button-notch.png"), in the resources'
/// folder "artwork" at one, two and three times their size in points ("button-notch@2x.png").
/// Each is read once. [main]
namespace Artwork {

/// The picture nearest to what a screen of that scale shows without loss; its device pixel ratio
/// is set. Null, with a line in the log, when there is none.
QImage image(const QString& name, qreal scale);

/// In points; empty when there is none.
QSizeF size(const QString& name);

}  // namespace Artwork
