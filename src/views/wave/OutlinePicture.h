#pragma once

#include <QColor>
#include <QImage>
#include <span>

#include "wave/WavePeaks.h"

/// An outline as a picture: a line at zero, and over it one column of pixels for each peak, with
/// edges that are as soft as a pixel. [any thread]
namespace OutlinePicture {

struct Style {
    QColor colour;
    QColor lineColour;
    int height = 0;     // pixels
    int thickness = 1;  // of the lines, pixels
};

/// Null without height or peaks.
QImage of(std::span<const WavePeak> peaks, const Style& style);

}  // namespace OutlinePicture
