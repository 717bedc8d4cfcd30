#pragma once

#include <QSGImageNode>
#include <QSGNode>
#include <QSGRectangleNode>
#include <QSGTexture>
#include <memory>

class OverviewScroller;
class QQuickWindow;

/// What is drawn of the overview: the picture, and the two shaders over it. [render, while main
/// waits]
class OverviewNode : public QSGNode {
  public:
    explicit OverviewNode(QQuickWindow& window);

    void show(const OverviewScroller& overview);

  private:
    void loadPicture(const OverviewScroller& overview);

    QQuickWindow& m_window;
    qreal m_scale = 0;
    std::unique_ptr<QSGTexture> m_texture;
    QSGImageNode* m_picture = nullptr;
    QSGRectangleNode* m_left;
    QSGRectangleNode* m_right;
};
