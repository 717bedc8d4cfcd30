#include "bubbles/PopupBubbleView.h"

#include <QPropertyAnimation>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QTimer>
#include <algorithm>
#include <cmath>

#include "bubbles/BubbleShape.h"

namespace {

constexpr QRectF kFirstFrame{0, 0, 128, 46};
constexpr qreal kTextPadding = 16;  // both sides together
constexpr qreal kTextMiddle = 19;   // of the body, without the arrow
constexpr qreal kArrowRoom = 16;    // from the tip to the body's side, with its corner
constexpr qreal kAboveAll = 1000;   // of what the container holds
constexpr int kFadeMilliseconds = 200;
constexpr int kGoneMilliseconds = 500;

/// The smallest frame of whole points that holds this one.
QRectF integral(const QRectF& frame) {
    const QPointF from(std::floor(frame.left()), std::floor(frame.top()));
    return {from, QPointF(std::ceil(frame.right()), std::ceil(frame.bottom()))};
}

}  // namespace

PopupBubbleView::PopupBubbleView(QQuickItem* parent)
    : QQuickItem(parent), m_textLabel(new BubbleLabel(this)) {
    setFlag(ItemHasContents);
    setZ(kAboveAll);
    setFrame(kFirstFrame);
    m_textLabel->setSize(size());
    connect(m_textLabel, &BubbleLabel::textChanged, this, &PopupBubbleView::textChanged);
}

PopupBubbleView::PopupBubbleView(QQuickItem* target, QQuickItem* container) : PopupBubbleView() {
    QQmlEngine::setObjectOwnership(this, QQmlEngine::CppOwnership);
    m_target = target;
    if (container == nullptr)
        return;
    // It is in no container yet, so this places it as if the target were at (0, 0): whoever wants
    // it elsewhere says so afterwards.
    if (target != nullptr) {
        const QRectF bounds = target->mapRectToItem(container, target->boundingRect());
        setArrowTarget({std::trunc(bounds.x() + bounds.width() / 2), bounds.top()});
    }
    setOpacity(0);
    setParent(container);
    setParentItem(container);
    fadeTo(1);
}

PopupBubbleView* PopupBubbleView::popupBubbleWithTarget(QQuickItem* target, QQuickItem* container) {
    return new PopupBubbleView(target, container);
}

PopupBubbleView* PopupBubbleView::popupBubbleWithTarget(QQuickItem* target) {
    return popupBubbleWithTarget(target, target->parentItem());
}

void PopupBubbleView::setColour(const QColor& colour) {
    if (colour == m_colour)
        return;
    m_colour = colour;
    Q_EMIT colourChanged();
}

void PopupBubbleView::setTarget(QQuickItem* target) {
    if (target == m_target)
        return;
    m_target = target;
    Q_EMIT targetChanged();
}

QPointF PopupBubbleView::arrowTarget() const {
    if (!m_target || parentItem() == nullptr)
        return {};
    const QPointF tip(x() + width() / 2 + m_shift, y() + height());
    return m_target->mapFromItem(parentItem(), tip);
}

void PopupBubbleView::setArrowTarget(QPointF point) {
    const bool placed = m_target && parentItem() != nullptr;
    const QPointF tip = placed ? m_target->mapToItem(parentItem(), point) : QPointF();
    setPosition({tip.x() - width() / 2, tip.y() - height()});
    shiftArrow(0);
}

void PopupBubbleView::keepInside() {
    if (parentItem() == nullptr)
        return;
    const qreal most = std::max(0., parentItem()->width() - width());
    const qreal inside = std::clamp(x(), 0., most);
    const qreal reach = std::max(0., width() / 2 - kArrowRoom);
    shiftArrow(std::clamp(m_shift + x() - inside, -reach, reach));
    setX(inside);
}

void PopupBubbleView::shiftArrow(qreal shift) {
    if (shift == m_shift)
        return;
    m_shift = shift;
    redraw();
}

void PopupBubbleView::sizeToFit() {
    m_textLabel->sizeToFit();
    const qreal fitting = m_textLabel->width() + kTextPadding;
    const qreal left = x() + std::trunc(width() / 2) - std::trunc(fitting / 2);
    setFrame(integral({left, y(), fitting, height()}));
    QRectF text({}, m_textLabel->size());
    text.moveCenter({fitting / 2, kTextMiddle});
    text = integral(text);
    m_textLabel->setPosition(text.topLeft());
    m_textLabel->setSize(text.size());
    redraw();
}

void PopupBubbleView::dismiss() {
    fadeTo(0);
    QTimer::singleShot(kGoneMilliseconds, this, [this] {
        setParentItem(nullptr);
        deleteLater();
    });
}

QPainterPath PopupBubbleView::newBubblePath() const {
    return BubbleShape::outline(width(), m_shift);
}

void PopupBubbleView::setFrame(const QRectF& frame) {
    setPosition(frame.topLeft());
    setSize(frame.size());
}

void PopupBubbleView::fadeTo(qreal opacity) {
    for (auto* running : findChildren<QPropertyAnimation*>())
        delete running;
    auto* fade = new QPropertyAnimation(this, "opacity", this);
    fade->setDuration(kFadeMilliseconds);
    fade->setEasingCurve(QEasingCurve::InOutSine);
    fade->setEndValue(opacity);
    fade->start(QAbstractAnimation::DeleteWhenStopped);
}

void PopupBubbleView::redraw() {
    m_redraw = true;
    update();
}

void PopupBubbleView::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size())
        redraw();
}

void PopupBubbleView::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    if (change == ItemDevicePixelRatioHasChanged)
        redraw();
}

QSGNode* PopupBubbleView::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<QSGImageNode*>(old);
    if (node != nullptr && !m_redraw)
        return node;
    if (node == nullptr) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
    }
    const qreal margin = BubbleShape::kShadowMargin;
    const qreal scale = window()->effectiveDevicePixelRatio();
    node->setTexture(
        window()->createTextureFromImage(BubbleShape::picture(size(), scale, m_shift)));
    node->setRect(boundingRect().adjusted(-margin, -margin, margin, margin));
    m_redraw = false;
    return node;
}
