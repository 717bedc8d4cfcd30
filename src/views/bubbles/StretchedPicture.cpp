#include "bubbles/StretchedPicture.h"

#include <QQuickWindow>
#include <QSGNinePatchNode>
#include <algorithm>

#include "artwork/Artwork.h"

StretchedPicture::StretchedPicture(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void StretchedPicture::setName(const QString& name) {
    if (name == m_name)
        return;
    m_name = name;
    const QSizeF size = Artwork::size(name);
    setImplicitSize(size.width(), size.height());
    Q_EMIT nameChanged();
    reload();
}

void StretchedPicture::setLeftCap(int points) {
    if (points == m_leftCap)
        return;
    m_leftCap = points;
    Q_EMIT leftCapChanged();
    reload();
}

void StretchedPicture::reload() {
    m_reload = true;
    update();
}

void StretchedPicture::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    if (change == ItemDevicePixelRatioHasChanged)
        reload();
}

QSGNode* StretchedPicture::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<QSGNinePatchNode*>(old);
    const qreal scale = window()->effectiveDevicePixelRatio();
    if (node == nullptr || m_reload) {
        delete node;
        node = nullptr;
        m_reload = false;
        const QImage image = Artwork::image(m_name, scale);
        if (image.isNull())
            return nullptr;
        node = window()->createNinePatchNode();
        node->setTexture(window()->createTextureFromImage(image));
        node->setDevicePixelRatio(image.devicePixelRatio());
    }
    const qreal rightCap = std::max(implicitWidth() - m_leftCap - 1, 0.);
    if (width() > m_leftCap + rightCap)
        node->setPadding(m_leftCap, 0, rightCap, 0);
    else
        node->setPadding(0, 0, 0, 0);
    node->setBounds(boundingRect());
    node->update();
    return node;
}
