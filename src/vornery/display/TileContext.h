#pragma once

/// Red, green, blue and alpha, 0 to 1.
struct TileColour {
    float red = 0, green = 0, blue = 0, alpha = 1;
    bool operator==(const TileColour&) const = default;
};

/// A vertical gradient from a tile's top to its bottom.
struct TileGradient {
    TileColour top, bottom;
    bool operator==(const TileGradient&) const = default;
};

/// In points of the view's layer.
struct TileFrame {
    double x = 0, y = 0, width = 0, height = 0;
    bool operator==(const TileFrame&) const = default;
};

/// What a tile draws on: points from the tile's upper left corner, 1024 wide.
class TileContext {
  public:
    virtual ~TileContext() = default;
    /// Height of what is to be drawn, points.
    virtual double clipHeight() const = 0;
    /// From (0, 0) to (0, height), and on beyond both ends.
    virtual void drawGradient(const TileGradient& gradient, double height) = 0;
    virtual void setFillColour(const TileColour& colour) = 0;
    /// Finite; width and height may be 0, never less.
    virtual void fillRect(double x, double y, double width, double height) = 0;
};
