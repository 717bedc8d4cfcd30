#include "keyboard/OverviewNode.h"

#include <QQuickWindow>

#include "artwork/Artwork.h"
#include "keyboard/OverviewScroller.h"
#include "keyboard/PixelScale.h"

namespace {

QSGRectangleNode* shader(QQuickWindow& window) {
    QSGRectangleNode* const node = window.createRectangleNode();
    node->setColor(QColor(0, 0, 0, 128));
    return node;
}

void place(QSGRectangleNode& shader, const QRectF& frame) {
    shader.setRect(frame.width() > 0 ? frame : QRectF());
}

}  // namespace

OverviewNode::OverviewNode(QQuickWindow& window)
    : m_window(window), m_left(shader(window)), m_right(shader(window)) {
    appendChildNode(m_left);
    appendChildNode(m_right);
}

void OverviewNode::loadPicture(const OverviewScroller& overview) {
    m_scale = pixelScale(overview);
    const QImage image = Artwork::image("mini-keyboard.png", m_scale);
    if (image.isNull())
        return;
    if (!m_picture) {
        m_picture = m_window.createImageNode();
        m_picture->setOwnsTexture(false);
        m_picture->setFiltering(QSGTexture::Linear);
        prependChildNode(m_picture);
    }
    std::unique_ptr<QSGTexture> texture(m_window.createTextureFromImage(image));
    m_picture->setTexture(texture.get());
    m_texture = std::move(texture);
}

void OverviewNode::show(const OverviewScroller& overview) {
    if (pixelScale(overview) != m_scale)
        loadPicture(overview);
    const QRectF bounds = overview.boundingRect();
    if (m_picture && m_picture->rect() != bounds)
        m_picture->setRect(bounds);
    place(*m_left, overview.leftShader() & bounds);
    place(*m_right, overview.rightShader() & bounds);
}
