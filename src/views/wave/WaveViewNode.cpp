#include "wave/WaveViewNode.h"

#include <QLinearGradient>
#include <QPainter>
#include <QSGImageNode>
#include <QSGRectangleNode>

namespace {

constexpr int kGradientRows = 128;  // more than the eye tells apart in near-black

QImage gradient(const QColor& top, const QColor& bottom) {
    QImage picture(8, kGradientRows, QImage::Format_RGB32);
    QLinearGradient colours(0, 0, 0, kGradientRows);
    colours.setColorAt(0, top);
    colours.setColorAt(1, bottom);
    QPainter(&picture).fillRect(picture.rect(), colours);
    return picture;
}

void removeLast(QSGNode& group) {
    QSGNode* const last = group.lastChild();
    group.removeChildNode(last);
    delete last;
}

void setTexture(QSGImageNode& node, QQuickWindow& window, const QImage& picture) {
    node.setTexture(window.createTextureFromImage(picture));  // the one before goes
    node.setSourceRect({{0, 0}, QSizeF(picture.size())});
}

}  // namespace

WaveViewNode::WaveViewNode(QQuickWindow& window)
    : m_window(window),
      m_background(addGroup()),
      m_tiles(addGroup()),
      m_gutter(addGroup()),
      m_centre(addGroup()),
      m_curve(addGroup()),
      m_lines(addGroup()) {}

QSGNode* WaveViewNode::addGroup() {
    auto* const group = new QSGTransformNode;
    appendChildNode(group);
    return group;
}

QSGImageNode* WaveViewNode::newImage(const QImage& picture) {
    QSGImageNode* const node = m_window.createImageNode();
    node->setOwnsTexture(true);
    node->setFiltering(QSGTexture::Linear);
    setTexture(*node, m_window, picture);
    return node;
}

void WaveViewNode::setPicture(QSGNode& group, const QImage& picture, const QRectF& rect,
                              bool fresh) {
    auto* node = static_cast<QSGImageNode*>(group.firstChild());
    if (picture.isNull() || rect.isEmpty()) {
        if (node)
            removeLast(group);
        return;
    }
    if (!node)
        group.appendChildNode(node = newImage(picture));
    else if (fresh)
        setTexture(*node, m_window, picture);
    node->setRect(rect);
}

void WaveViewNode::setRect(QSGNode& group, const QRectF& rect, const QColor& colour) {
    auto* node = static_cast<QSGRectangleNode*>(group.firstChild());
    if (!node)
        group.appendChildNode(node = m_window.createRectangleNode());
    if (node->color() != colour)
        node->setColor(colour);
    if (node->rect() != rect)
        node->setRect(rect);
}

void WaveViewNode::showBackground(const QRectF& rect, const QColor& top, const QColor& bottom) {
    const bool fresh = !m_background->firstChild() || top != m_top || bottom != m_bottom;
    m_top = top;
    m_bottom = bottom;
    setPicture(*m_background, fresh ? gradient(top, bottom) : QImage(1, 1, QImage::Format_RGB32),
               rect, fresh);
}

void WaveViewNode::showGutter(const QRectF& rect, const QColor& colour) {
    setRect(*m_gutter, rect, colour);
}

void WaveViewNode::showCentre(const QRectF& rect, const QColor& colour) {
    setRect(*m_centre, rect, colour);
}

void WaveViewNode::showCurve(const QImage& picture, const QRectF& rect, bool fresh) {
    setPicture(*m_curve, picture, rect, fresh);
}

void WaveViewNode::showLines(const std::vector<UprightLine>& lines, double height) {
    while (m_lines->childCount() > int(lines.size()))
        removeLast(*m_lines);
    QSGNode* next = m_lines->firstChild();
    for (const UprightLine& line : lines) {
        auto* node = static_cast<QSGRectangleNode*>(next);
        if (!node)
            m_lines->appendChildNode(node = m_window.createRectangleNode());
        next = node->nextSibling();
        const QRectF rect(line.x - line.width / 2, 0, line.width, height);
        if (node->color() != line.colour)
            node->setColor(line.colour);
        if (node->rect() != rect)
            node->setRect(rect);
    }
}

/// The node of this tile, or a new one; below no parent.
WaveViewNode::TileNode* WaveViewNode::takeNode(const ShownTile& tile) {
    for (QSGNode* node = m_tiles->firstChild(); node; node = node->nextSibling()) {
        auto* const found = static_cast<TileNode*>(node);
        if (found->tile == tile.tile) {
            m_tiles->removeChildNode(found);
            return found;
        }
    }
    auto* const made = new TileNode;
    made->tile = tile.tile;
    made->image = newImage(tile.picture);
    made->version = tile.version;
    made->appendChildNode(made->image);
    return made;
}

void WaveViewNode::showTile(TileNode& node, const ShownTile& tile) {
    if (node.version != tile.version) {
        setTexture(*node.image, m_window, tile.picture);
        node.version = tile.version;
    }
    if (node.image->rect() != tile.rect || node.image->sourceRect() != tile.source) {
        // Column by column it is copied; stretched it is resampled.
        const bool asItIs = tile.rect.size() == tile.source.size();
        node.image->setFiltering(asItIs ? QSGTexture::Nearest : QSGTexture::Linear);
        node.image->setSourceRect(tile.source);
        node.image->setRect(tile.rect);
    }
    if (node.opacity() != tile.opacity)
        node.setOpacity(tile.opacity);
}

void WaveViewNode::showTiles(const std::vector<ShownTile>& tiles) {
    QSGNode* node = m_tiles->firstChild();
    for (const ShownTile& tile : tiles) {
        if (node && static_cast<TileNode*>(node)->tile == tile.tile) {
            showTile(*static_cast<TileNode*>(node), tile);
            node = node->nextSibling();
            continue;
        }
        TileNode* const taken = takeNode(tile);
        if (node)
            m_tiles->insertChildNodeBefore(taken, node);
        else
            m_tiles->appendChildNode(taken);
        showTile(*taken, tile);
    }
    while (node) {
        QSGNode* const gone = node;
        node = node->nextSibling();
        m_tiles->removeChildNode(gone);
        delete gone;
    }
}
