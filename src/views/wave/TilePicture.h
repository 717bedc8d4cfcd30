#pragma once

#include <QImage>

#include "WaveTileLayer.h"

/// What a tile draws, as a picture: a pixel for each of its columns, from top to bottom as fine as
/// the screen. Edges are as soft as a pixel. [main]
class TilePicture : public TileContext {
  public:
    /// @param height  points
    /// @param scale   pixels in a point, from top to bottom
    TilePicture(double height, double scale);

    /// Transparent where nothing was drawn.
    const QImage& image() const { return m_image; }

    double clipHeight() const override { return m_height; }
    void drawGradient(const TileGradient& gradient, double height) override;
    void setFillColour(const TileColour& colour) override;
    void fillRect(double x, double y, double width, double height) override;

  private:
    QRgb* row(int y) { return m_pixels + std::ptrdiff_t(y) * m_image.width(); }
    void blend(QRgb& pixel, double coverage) const;

    double m_height;
    double m_scale;
    QImage m_image;
    QRgb* m_pixels;  // rows follow each other without gaps
    TileColour m_colour;
    QRgb m_filled = 0;
};
