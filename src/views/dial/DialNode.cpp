#include "dial/DialNode.h"

#include <QSGImageNode>

namespace {

QRectF around(QPointF centre, QSizeF size) {
    return {centre - QPointF(size.width() / 2, size.height() / 2), size};
}

}  // namespace

DialNode::DialNode(QQuickWindow& window, const DialPictures& pictures, QPointF centre,
                   const QList<QPointF>& lamps)
    : m_window(window), m_notchSize(pictures.notch.deviceIndependentSize()) {
    picture(*this, texture(pictures.face), pictures.face.deviceIndependentSize(), centre);
    m_notch = picture(*this, texture(pictures.notch), m_notchSize, centre);
    QSGTexture* const lit = texture(pictures.lamp);
    for (const QPointF lamp : lamps) {
        auto* const opacity = new QSGOpacityNode;
        picture(*opacity, lit, pictures.lamp.deviceIndependentSize(), lamp);
        appendChildNode(opacity);
        m_lamps.push_back(opacity);
    }
    picture(*this, texture(pictures.glyph), pictures.glyph.deviceIndependentSize(), centre);
}

DialNode::~DialNode() = default;

void DialNode::setNotch(QPointF centre) {
    const QRectF rect = around(centre, m_notchSize);
    if (m_notch != nullptr && m_notch->rect() != rect)
        m_notch->setRect(rect);
}

void DialNode::setLampAlpha(qsizetype lamp, float alpha) {
    m_lamps[std::size_t(lamp)]->setOpacity(qreal(alpha));  // an equal one changes nothing
}

QSGTexture* DialNode::texture(const QImage& image) {
    if (image.isNull())
        return nullptr;
    const auto options = QQuickWindow::CreateTextureOptions(QQuickWindow::TextureHasAlphaChannel) |
                         QQuickWindow::TextureCanUseAtlas;
    m_textures.emplace_back(m_window.createTextureFromImage(image, options));
    return m_textures.back().get();
}

QSGImageNode* DialNode::picture(QSGNode& parent, QSGTexture* texture, QSizeF size, QPointF centre) {
    if (texture == nullptr)
        return nullptr;
    QSGImageNode* const node = m_window.createImageNode();
    node->setTexture(texture);
    node->setFiltering(QSGTexture::Linear);
    node->setRect(around(centre, size));
    parent.appendChildNode(node);
    return node;
}
