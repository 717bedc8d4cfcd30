#pragma once

#include <cstdint>

/// Which frames a view shows, and how tiles of 1024 points cover it. Points from the view's left
/// edge.
struct StripGeometry {
    static constexpr double kTileWidth = 1024;
    static constexpr std::int64_t kLeastTiles = 3;

    double width = 0;        // of the view, points
    std::int32_t start = 0;  // frames at its left and its right edge
    std::int32_t stop = 0;

    bool showsFrames() const { return stop > start && width > 0; }
    double pointsPerFrame() const { return width / double(std::int64_t{stop} - start); }
    double xOf(std::int64_t frame) const { return double(frame - start) * pointsPerFrame(); }
    /// Whole frames of a tile; at least one.
    std::int64_t span() const;
    /// How many tiles a strip has.
    std::int64_t tiles() const;
    /// By how many strips a tile of one of `tiles` has to move to be of use again: 1 when it has
    /// left on the left side, -1 on the right one, else 0.
    static int wrap(double x, double tileWidth, std::int64_t tiles);
};
