#include "take/TakeOutlineView.h"

#include <QQuickWindow>
#include <QSGRectangleNode>
#include <algorithm>

TakeOutlineView::TakeOutlineView(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void TakeOutlineView::setTake(TakeScreen* take) {
    if (take == m_take)
        return;
    if (m_take)
        disconnect(m_take, nullptr, this, nullptr);
    m_take = take;
    if (m_take)
        connect(m_take, &TakeScreen::levelChanged, this, &TakeOutlineView::look);
    look();
    Q_EMIT takeChanged();
}

void TakeOutlineView::setColor(const QColor& color) {
    if (color == m_color)
        return;
    m_color = color;
    redraw();
    Q_EMIT colorChanged();
}

void TakeOutlineView::look() {
    const auto now = m_take ? m_take->outline().columns() : std::vector<TakeOutline::Column>();
    if (now == m_columns)
        return;
    if (now.size() < m_columns.size())
        m_drawn = 0;  // another take
    m_columns = now;
    update();
}

void TakeOutlineView::redraw() {
    m_drawn = 0;
    update();
}

void TakeOutlineView::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size())
        redraw();
}

QRectF TakeOutlineView::frameOf(int column) const {
    constexpr qreal kColumns = AudioTake::kLongestTake * TakeScreen::kLooksPerSecond;
    const TakeOutline::Column& extent = m_columns[std::size_t(column)];
    const qreal middle = height() / 2;
    const qreal top = middle * (1 - qreal(extent.high));
    const qreal bottom = std::max(middle * (1 - qreal(extent.low)), top + 1);  // silence is a line
    const qreal each = width() / kColumns;
    return {column * each, top, each, bottom - top};
}

QSGNode* TakeOutlineView::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    // The software renderer forgets where columns that come later belong, below a plain node.
    QSGNode* const root = old ? old : new QSGTransformNode;
    const int count = static_cast<int>(m_columns.size());
    while (root->childCount() > count) {
        QSGNode* const last = root->lastChild();
        root->removeChildNode(last);
        delete last;
    }
    QSGNode* next = root->childAtIndex(m_drawn);
    for (int column = m_drawn; column < count; ++column) {
        auto* node = static_cast<QSGRectangleNode*>(next);
        next = next ? next->nextSibling() : nullptr;
        if (!node) {
            node = window()->createRectangleNode();
            root->appendChildNode(node);
        }
        node->setColor(m_color);
        node->setRect(frameOf(column));
    }
    m_drawn = std::max(0, count - 1);
    return root;
}
