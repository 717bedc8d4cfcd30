#pragma once

#include <QColor>
#include <QImage>
#include <QQuickWindow>
#include <QSGNode>
#include <vector>

class QSGImageNode;
class QSGRectangleNode;

/// One tile as it is to be seen.
struct ShownTile {
    const void* tile = nullptr;  // tells it from others
    quint64 version = 0;         // of its picture, never the same for two
    QImage picture;
    QRectF rect;    // points
    QRectF source;  // of the picture, pixels
    double opacity = 1;
};

/// A coloured upright line.
struct UprightLine {
    double x = 0;  // points, of its middle
    double width = 1;
    QColor colour;
};

/// A wave in the scene graph, bottom to top: background, tiles, gutter, centre line, samples, read
/// heads. Nodes and textures are used again; nothing is touched that stays as it is. Transform
/// nodes, though they move nothing: below plain nodes the software renderer loses the place of what
/// comes later. [render, while the main thread waits]
class WaveViewNode : public QSGTransformNode {
  public:
    explicit WaveViewNode(QQuickWindow& window);

    void showBackground(const QRectF& rect, const QColor& top, const QColor& bottom);
    /// Bottom to top.
    void showTiles(const std::vector<ShownTile>& tiles);
    void showCentre(const QRectF& rect, const QColor& colour);
    void showGutter(const QRectF& rect, const QColor& colour);
    /// `fresh` with another picture than before; a null one is none.
    void showCurve(const QImage& picture, const QRectF& rect, bool fresh);
    void showLines(const std::vector<UprightLine>& lines, double height);

  private:
    /// Its picture below an opacity of its own.
    struct TileNode : public QSGOpacityNode {
        const void* tile = nullptr;
        quint64 version = 0;
        QSGImageNode* image = nullptr;
    };

    QSGNode* addGroup();
    void setPicture(QSGNode& group, const QImage& picture, const QRectF& rect, bool fresh);
    void setRect(QSGNode& group, const QRectF& rect, const QColor& colour);
    QSGImageNode* newImage(const QImage& picture);
    TileNode* takeNode(const ShownTile& tile);
    void showTile(TileNode& node, const ShownTile& tile);

    QQuickWindow& m_window;
    QColor m_top, m_bottom;
    QSGNode* m_background;
    QSGNode* m_tiles;
    QSGNode* m_gutter;
    QSGNode* m_centre;
    QSGNode* m_curve;
    QSGNode* m_lines;
};
