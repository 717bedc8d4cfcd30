#pragma once

#include <QColor>
#include <QImage>
#include <vector>

/// Draws curves that run from left to right: a line of even thickness, and a face between it and
/// the middle. Each column of pixels adds up how much of it is covered at a few places across, so
/// the cost depends on the picture alone, however wild the curve; as strokes of a painter, noise
/// takes ten times as long. [any thread]
class CurveRaster {
  public:
    static constexpr int kParts = 4;  // places across a pixel

    struct Style {
        QColor colour;
        double face = 0;       // opacity of the face
        double thickness = 1;  // of the line, pixels
    };

    /// A curve's heights, in pixels from the picture's top, at every part of a pixel from its left
    /// edge on; those before `begin` and from `end` on do not exist.
    struct Heights {
        std::vector<float> at;
        int begin = 0;
        int end = 0;
    };

    /// @param picture  to be drawn on; transparent, ARGB32_Premultiplied
    CurveRaster(QImage& picture, const Style& style);

    /// Draws curves over each other, a column at a time.
    void draw(const std::vector<Heights>& curves);

  private:
    struct Span {
        float top, bottom;
    };
    Span lineAt(const Heights& curve, int part) const;
    void cover(std::vector<float>& steps, Span span);
    void drawColumn(int x, const std::vector<Heights>& curves);
    void blendColumn(int x);

    QImage& m_picture;
    float m_face;
    std::vector<float> m_brush;  // half height of the line's round brush, by parts from its middle
    std::vector<QRgb> m_shades;  // the colour, by opacity in 255
    std::vector<float> m_line;   // changes of the coverage from row to row
    std::vector<float> m_faces;
    int m_first = 0;  // rows that are touched
    int m_last = -1;
};
