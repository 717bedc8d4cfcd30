#include "keyboard/PianoKeyNode.h"

#include "keyboard/PixelScale.h"

PianoKeyNode::PianoKeyNode(QQuickWindow& window, std::size_t labels)
    : m_textures(KeyTextures::of(window)), m_picture(addImage(window)) {
    for (std::size_t label = 0; label < labels; ++label)
        m_labels.push_back(addImage(window));
}

QSGImageNode* PianoKeyNode::addImage(QQuickWindow& window) {
    QSGImageNode* const image = window.createImageNode();
    image->setOwnsTexture(false);
    image->setFiltering(QSGTexture::Linear);
    appendChildNode(image);
    return image;
}

void PianoKeyNode::show(const PianoKeyButton& key) {
    const qreal scale = pixelScale(key);
    m_picture->setTexture(m_textures->picture(key, scale));
    m_picture->setRect(QRectF({}, key.size()));
    for (std::size_t i = 0; i < m_labels.size(); ++i) {
        const KeyLabel& label = key.labels()[i];
        m_labels[i]->setTexture(m_textures->label(label, scale));
        m_labels[i]->setRect(label.frame);
    }
}
