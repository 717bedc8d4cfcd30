#include "wave/WaveOutline.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <algorithm>
#include <cmath>
#include <memory>

namespace {

// What the graphics hardware takes, and more columns than any screen has.
constexpr int kLargestSide = 8192;  // pixels

int pixels(qreal points, qreal scale) {
    return std::clamp(static_cast<int>(std::lround(points * scale)), 0, kLargestSide);
}

}  // namespace

WaveOutline::WaveOutline(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    connect(this, &WaveOutline::coloursChanged, this, &QQuickItem::polish);
}

void WaveOutline::setWave(WaveState* wave) {
    if (wave == m_wave)
        return;
    if (m_wave)
        m_wave->disconnect(this);
    m_wave = wave;
    if (wave)
        connect(wave, &WaveState::waveChanged, this, &QQuickItem::polish);
    polish();
    Q_EMIT waveChanged();
}

void WaveOutline::updatePolish() {
    const qreal scene = mapRectToScene({0, 0, 1, 1}).width();
    const qreal scale = scene * (window() ? window()->effectiveDevicePixelRatio() : 1);
    const int columns = pixels(width(), scale);
    const int rows = pixels(height(), scale);
    if (columns == 0 || rows == 0)
        return;
    if (!m_wave || !m_wave->wave()) {
        m_worker.cancel();
        return show({});
    }
    const int thickness = std::max(1, static_cast<int>(std::lround(scale)));
    m_worker.make(m_wave->wave(), columns, {m_colour, m_lineColour, rows, thickness},
                  [this](const QImage& picture) { show(picture); });
}

void WaveOutline::show(const QImage& picture) {
    m_picture = picture;
    m_fresh = true;
    update();
    Q_EMIT drawn();
}

QSGNode* WaveOutline::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto node = std::unique_ptr<QSGImageNode>(static_cast<QSGImageNode*>(old));
    if (m_picture.isNull())
        return nullptr;
    if (!node) {
        node.reset(window()->createImageNode());
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
        m_fresh = true;
    }
    if (m_fresh) {
        node->setTexture(window()->createTextureFromImage(m_picture));
        node->setSourceRect({{0, 0}, QSizeF(m_picture.size())});
        m_fresh = false;
    }
    node->setRect(boundingRect());
    return node.release();
}

void WaveOutline::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size()) {
        polish();
        update();
    }
}

void WaveOutline::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
        m_fresh = true;
        polish();
    }
}
