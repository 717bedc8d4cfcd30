#pragma once

#include <QColor>
#include <QImage>

#include "wave/VisibleSamples.h"
#include "wave/WaveViewport.h"

/// A picture of a sound that is seen at more than a point for each frame: a line through its
/// samples over a face that goes back as they are drawn apart, and dots where they are. At the
/// crossover it looks like the columns that it lies over. [any thread]
namespace WaveCurve {

/// Points between two samples from which on they are shown as dots.
constexpr double kDotted = 8;

struct Style {
    QColor colour;
    QColor dotColour;
    double height = 0;  // points
    double scale = 1;   // pixels in a point
};

/// Whether the view is that close.
bool isSeenIn(const WaveViewport& viewport);
/// Null where there is nothing to see.
QImage of(const WaveSequenceAccess& sound, const WaveViewport& viewport, const Style& style);

}  // namespace WaveCurve
