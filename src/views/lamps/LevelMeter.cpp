#include "lamps/LevelMeter.h"

#include <QQuickWindow>
#include <QSGRectangleNode>
#include <algorithm>
#include <cmath>

namespace {

constexpr qreal kGap = 2;  // points

int segmentsFor(float level) {
    if (!(level > 0))
        return 0;
    const float decibels = 20 * std::log10(level);
    const float lit = LevelMeter::kSegments + decibels / LevelMeter::kSegmentDecibels;
    return static_cast<int>(std::ceil(std::clamp<float>(lit, 0, LevelMeter::kSegments)));
}

}  // namespace

LevelMeter::LevelMeter(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void LevelMeter::setLevel(float level) {
    if (level == m_level)
        return;
    m_level = level;
    if (const int lit = segmentsFor(level); lit != m_lit) {
        m_lit = lit;
        update();
    }
    Q_EMIT levelChanged();
}

void LevelMeter::setLitColour(const QColor& colour) {
    m_litColour = colour;
    update();
    Q_EMIT coloursChanged();
}

void LevelMeter::setUnlitColour(const QColor& colour) {
    m_unlitColour = colour;
    update();
    Q_EMIT coloursChanged();
}

QRectF LevelMeter::segment(int index) const {
    const qreal step = (width() + kGap) / kSegments;
    const qreal left = std::round(index * step);
    return {left, 0, std::round((index + 1) * step) - kGap - left, height()};
}

QSGNode* LevelMeter::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    QSGNode* const root = old ? old : new QSGNode;
    while (root->childCount() < kSegments)
        root->appendChildNode(window()->createRectangleNode());
    for (int i = 0; i < kSegments; ++i) {
        auto* const node = static_cast<QSGRectangleNode*>(root->childAtIndex(i));
        const QColor colour = i < m_lit ? m_litColour : m_unlitColour;
        if (node->rect() != segment(i))
            node->setRect(segment(i));
        if (node->color() != colour)
            node->setColor(colour);
    }
    return root;
}

void LevelMeter::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    update();
}
