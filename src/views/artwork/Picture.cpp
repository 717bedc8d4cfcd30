#include "artwork/Picture.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QtMath>
#include <memory>

#include "artwork/Artwork.h"

Picture::Picture(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void Picture::setName(const QString& name) {
    if (name == m_name)
        return;
    m_name = name;
    const QSizeF size = name.isEmpty() ? QSizeF(0, 0) : Artwork::size(name);
    setImplicitSize(size.width(), size.height());
    redraw();
    Q_EMIT nameChanged();
}

qreal Picture::pixels() const {
    const qreal scene = mapRectToScene({0, 0, 1, 1}).width();
    return scene * (window() ? window()->effectiveDevicePixelRatio() : 1);
}

void Picture::redraw() {
    m_drawnPixels = 0;
    update();
}

QSGNode* Picture::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto kept = std::unique_ptr<QSGImageNode>(static_cast<QSGImageNode*>(old));
    const QImage image = m_name.isEmpty() ? QImage() : Artwork::image(m_name, pixels());
    if (image.isNull())
        return nullptr;
    if (!kept) {
        kept.reset(window()->createImageNode());
        kept->setOwnsTexture(true);
        kept->setFiltering(QSGTexture::Linear);
        m_drawnPixels = 0;
    }
    if (m_drawnPixels != pixels()) {
        kept->setTexture(window()->createTextureFromImage(image));
        kept->setSourceRect({{0, 0}, QSizeF(image.size())});
        m_drawnPixels = pixels();
    }
    kept->setRect(boundingRect());
    return kept.release();
}

void Picture::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size())
        update();
}

void Picture::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    if (change == ItemDevicePixelRatioHasChanged)
        redraw();
    if (change != ItemSceneChange)
        return;
    disconnect(m_windowResized);
    m_drawnPixels = 0;
    // The scene is scaled with the width of its window.
    if (value.window)
        m_windowResized = connect(value.window, &QQuickWindow::widthChanged, this, [this] {
            if (m_drawnPixels != pixels())
                update();
        });
}
