#pragma once

#include <QImage>
#include <QList>
#include <QQuickWindow>
#include <QSGNode>
#include <memory>
#include <vector>

class QSGImageNode;

/// The pictures of a dial, for one scale; where one is missing its image is null.
struct DialPictures {
    QImage face;  // with the unlit lamps
    QImage notch;
    QImage lamp;
    QImage glyph;
};

/// A dial in the scene graph. Only what changed between frames is touched: usually the notch and
/// one lamp. A transform node, though it moves nothing: the software renderer of Qt 6.4 loses the
/// place of opacity nodes whose parent is a plain node. [render, while the main thread waits]
class DialNode : public QSGTransformNode {
  public:
    /// Points are the dial's own; lamps are given in arc order.
    DialNode(QQuickWindow& window, const DialPictures& pictures, QPointF centre,
             const QList<QPointF>& lamps);
    ~DialNode() override;

    void setNotch(QPointF centre);
    void setLampAlpha(qsizetype lamp, float alpha);

  private:
    QSGTexture* texture(const QImage& image);
    QSGImageNode* picture(QSGNode& parent, QSGTexture* texture, QSizeF size, QPointF centre);

    QQuickWindow& m_window;
    std::vector<std::unique_ptr<QSGTexture>> m_textures;
    QSizeF m_notchSize;
    QSGImageNode* m_notch;
    std::vector<QSGOpacityNode*> m_lamps;
};
