#include "keyboard/OverviewScroller.h"

#include <QQuickWindow>
#include <QSGRectangleNode>
#include <algorithm>

#include "artwork/Picture.h"

namespace {

constexpr int kKeysInOctave = 7;  // white ones

float single(qreal value) {
    return static_cast<float>(value);
}

/// The two shaders over the picture.
class ShadersNode : public QSGNode {
  public:
    explicit ShadersNode(QQuickWindow& window) : m_left(add(window)), m_right(add(window)) {}

    void place(const QRectF& left, const QRectF& right) {
        m_left->setRect(left.width() > 0 ? left : QRectF());
        m_right->setRect(right.width() > 0 ? right : QRectF());
    }

  private:
    QSGRectangleNode* add(QQuickWindow& window) {
        QSGRectangleNode* const shader = window.createRectangleNode();
        shader->setColor(QColor::fromRgbF(0, 0, 0, 0.5f));
        appendChildNode(shader);
        return shader;
    }

    QSGRectangleNode* m_left;
    QSGRectangleNode* m_right;
};

}  // namespace

OverviewScroller::OverviewScroller(QQuickItem* parent)
    : FingersItem(parent), m_picture(new Picture(this)) {
    commonInit();
}

void OverviewScroller::commonInit() {
    setFlag(ItemHasContents);
    m_picture->setName("mini-keyboard.png");
    m_picture->setZ(-1);  // below the shaders
    layoutShaders();
}

void OverviewScroller::setTarget(ScrollingKeyboardView* target) {
    if (m_target)
        m_target->disconnect(this);
    m_target = target;
    layoutShaders();
    if (target) {
        using View = ScrollingKeyboardView;
        connect(target, &View::contentXChanged, this, &OverviewScroller::scrollViewDidScroll);
        connect(target, &View::contentSizeChanged, this, &OverviewScroller::layoutShaders);
        connect(target, &View::widthChanged, this, &OverviewScroller::layoutShaders);
    }
    Q_EMIT targetChanged();
}

void OverviewScroller::layoutShaders() {
    if (!m_target || m_target->width() <= 0 || m_target->contentWidth() <= 0)
        return;
    const QRectF bounds = boundingRect();
    const float wide = single(bounds.width());
    const float content = single(m_target->contentWidth());
    m_highlightSize = wide * single(m_target->width()) / content;
    m_highlightX = wide * single(m_target->contentX()) / content;
    const float right = m_highlightX + m_highlightSize;
    m_leftShader = {bounds.x(), bounds.y(), m_highlightX, bounds.height()};
    m_rightShader = {bounds.x() + right, bounds.y(), wide - right, bounds.height()};
    update();
    Q_EMIT shadersLaidOut();
}

void OverviewScroller::centreAround(float x) {
    if (!hasTarget())
        return;
    const float fraction = x / single(width());
    const float offset =
        fraction * single(m_target->contentWidth()) - single(m_target->width()) * 0.5f;
    m_target->scrollTo(m_target->clamped(offset), true);
}

void OverviewScroller::fingerPressed(int finger, QPointF at, quint64) {
    if (m_finger || !hasTarget())
        return;
    const float x = single(at.x());
    m_finger = finger;
    m_touchX = x;
    if (m_highlightX <= x && x < m_highlightX + m_highlightSize) {
        m_dragging = true;
        m_initialX = single(m_target->contentX());
    } else {
        centreAround(x);
    }
}

void OverviewScroller::fingerMoved(int finger, QPointF to, quint64) {
    if (finger != m_finger || !hasTarget())
        return;
    const float x = single(to.x());
    if (!m_dragging) {
        centreAround(x);
        return;
    }
    const float scale = single(m_target->contentWidth()) / single(width());
    m_target->scrollTo(m_target->clamped(m_initialX + scale * (x - m_touchX)), false);
    layoutShaders();
}

void OverviewScroller::fingerReleased(int finger, quint64) {
    if (finger == m_finger)
        m_finger.reset();
}

void OverviewScroller::wheelEvent(QWheelEvent* event) {
    if (m_target)
        m_target->scrollByWheel(*event);
}

void OverviewScroller::keyPressEvent(QKeyEvent* event) {
    const bool left = event->key() == Qt::Key_Left;
    if (!hasTarget() || (!left && event->key() != Qt::Key_Right)) {
        event->ignore();
        return;
    }
    scrollByOctaves(left ? -1 : 1);
}

void OverviewScroller::scrollByOctaves(int octaves) {
    if (m_target)
        m_target->scrollBy(octaves * m_target->contentWidth() * kKeysInOctave / kWhiteKeyCount);
}

void OverviewScroller::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() == before.size())
        return;
    m_picture->setSize(now.size());
    layoutShaders();
}

QSGNode* OverviewScroller::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<ShadersNode*>(old);
    if (!node)
        node = new ShadersNode(*window());
    node->place(m_leftShader & boundingRect(), m_rightShader & boundingRect());
    return node;
}
