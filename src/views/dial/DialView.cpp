#include "dial/DialView.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickWindow>
#include <QStyleHints>
#include <QTimerEvent>
#include <utility>

#include "artwork/Artwork.h"
#include "dial/Announcement.h"
#include "dial/DialFace.h"
#include "dial/DialGeometry.h"
#include "dial/DialNode.h"
#include "dial/TooltipFormat.h"

namespace {

constexpr qreal kSide = 80;
constexpr int kMouse = -1;                      // beside the ids of fingers
constexpr float kStep = 0.02f;                  // of the sweep, for a notch of the wheel or a key
constexpr float kPage = 0.1f;                   // of the sweep
constexpr int kBubbleMilliseconds = 1000;       // after a step that no finger holds
constexpr int kHoldMilliseconds = 600;          // of a finger that rests
constexpr int kAnnouncementMilliseconds = 500;  // only the last value of a quick turn is spoken
constexpr qreal kWheelNotch = 120;

bool asksForMenu(const QKeyEvent& event) {
    return event.key() == Qt::Key_Menu ||
           (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
}

bool isFine(Qt::KeyboardModifiers modifiers) {
    return modifiers.testFlag(Qt::ShiftModifier);
}

/// How far a key turns, or 0.
float keyStep(int key, Qt::KeyboardModifiers modifiers) {
    const float step = isFine(modifiers) ? kStep * kFineTurn : kStep;
    switch (key) {
        case Qt::Key_Up:
        case Qt::Key_Right:
            return step;
        case Qt::Key_Down:
        case Qt::Key_Left:
            return -step;
        case Qt::Key_PageUp:
            return kPage;
        case Qt::Key_PageDown:
            return -kPage;
        case Qt::Key_Home:
            return -1;
        case Qt::Key_End:
            return 1;
        default:
            return 0;
    }
}

}  // namespace

DialView::DialView(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    setImplicitSize(kSide, kSide);
    setAcceptTouchEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    setActiveFocusOnTab(true);
}

DialView::~DialView() {
    ensureNoTooltip();
}

float DialView::value() const {
    return (1.f - m_position) * m_minValue + m_position * m_maxValue;
}

void DialView::setValue(float value) {
    if (!isComponentComplete()) {
        m_valueWhenComplete = value;
        return;
    }
    turnTo(DialGeometry::clamped((value - m_minValue) / (m_maxValue - m_minValue)));
    updateAngle();
}

void DialView::componentComplete() {
    QQuickItem::componentComplete();
    if (m_valueWhenComplete)
        setValue(*m_valueWhenComplete);
}

void DialView::setImage(const QString& name) {
    m_image = name;
    redrawAll();
}

void DialView::setGlyph(const QString& name) {
    if (name == m_glyph)
        return;
    m_glyph = name;
    redrawAll();
    Q_EMIT spokenTextChanged();  // a formatter may tell what the glyph shows
}

void DialView::setNotchRadius(float radius) {
    m_notchRadius = radius;
    updateAngle();
}

void DialView::turnTo(float position) {
    if (position == m_position)
        return;
    m_position = position;
    if (m_tooltip)
        m_tooltip->setText(formatTooltip(false));
    Q_EMIT normalisedValueChanged();
    Q_EMIT spokenTextChanged();
}

QString DialView::formatTooltip(bool accessible) const {
    if (m_tooltipFormatter != nullptr)
        return m_tooltipFormatter->formatDialView(*this, accessible);
    const bool spoken = accessible && !m_accessibleTooltipFormat.isEmpty();
    return TooltipFormat::applied(spoken ? m_accessibleTooltipFormat : m_tooltipFormat,
                                  double(value() * m_tooltipScale));
}

void DialView::showTooltip() {
    QQuickItem* const container = m_bubbleContainer ? m_bubbleContainer.data() : parentItem();
    if (m_tooltip || (m_tooltipFormat.isEmpty() && m_tooltipFormatter == nullptr))
        return;
    if (container == nullptr)
        return;
    m_tooltip = PopupBubbleView::popupBubbleWithTarget(this, container);
    m_tooltip->setText(formatTooltip(false) + "MM");  // room to grow without a change of size
    m_tooltip->setArrowTarget({width() / 2, height() / 6});
    m_tooltip->sizeToFit();
    m_tooltip->setText(formatTooltip(false));
}

void DialView::ensureNoTooltip() {
    m_bubbleTime.stop();
    if (m_tooltip)
        m_tooltip->dismiss();
    m_tooltip = nullptr;
}

void DialView::announce() {
    Announcement::post(*this, double(value()));
}

void DialView::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_bubbleTime.timerId()) {
        ensureNoTooltip();
    } else if (event->timerId() == m_announcement.timerId()) {
        m_announcement.stop();
        announce();
    } else if (event->timerId() == m_holdTime.timerId()) {
        held();
    } else {
        QQuickItem::timerEvent(event);
    }
}

// Turning

void DialView::touchBegan(int finger, QPointF at, quint64 time) {
    m_finger = finger;
    m_bubbleTime.stop();
    m_drag.begin(at, m_position);
    m_taps.pressed(time, at);
    m_isHeld = false;
    if (m_menuOffered)
        m_holdTime.start(kHoldMilliseconds, this);
    setKeepMouseGrab(true);  // no list around it takes the drag away
    setKeepTouchGrab(true);
    forceActiveFocus(Qt::MouseFocusReason);
    setFocusVisible(false);
    showTooltip();
    Q_EMIT pressedChanged();
}

void DialView::touchMoved(QPointF to, bool fine) {
    if (m_drag.isAt(to))
        return;  // told twice, or of a finger that rests while another moves
    m_taps.moved(to);
    if (holds(to))
        return;
    const float dragged =
        DialGeometry::clamped(m_drag.moved(to, m_mode, m_speedRatio, fine, m_position));
    turnTo(fine ? dragged : DialDrag::snapped(dragged, m_notches));
    changedByPlayer();
}

void DialView::setMenuOffered(bool offered) {
    m_menuOffered = offered;
    if (!offered)
        m_holdTime.stop();
    setAcceptedMouseButtons(offered ? Qt::LeftButton | Qt::RightButton : Qt::LeftButton);
}

/// A finger that rests is never quite still.
void DialView::held() {
    m_holdTime.stop();
    m_isHeld = true;
    m_taps.cancel();
    ensureNoTooltip();
    if (m_position != m_drag.touchedValue()) {
        turnTo(m_drag.touchedValue());
        changedByPlayer();
    }
    Q_EMIT menuAsked();
}

/// Whether the finger has been held, and still is; one that goes on turns from there.
bool DialView::holds(QPointF to) {
    const QPointF way = to - m_drag.touchDownAt();
    if (way.manhattanLength() < QGuiApplication::styleHints()->startDragDistance())
        return m_isHeld;
    m_holdTime.stop();
    if (std::exchange(m_isHeld, false)) {
        m_drag.begin(to, m_position);
        showTooltip();
    }
    return false;
}

void DialView::tapEnded() {
    const bool twice = m_taps.released();
    letGo();
    if (twice)
        Q_EMIT doubleTapped();
}

void DialView::touchEnded() {
    if (m_finger)  // the grab of a finger that was lifted is taken away as well
        m_taps.cancel();
    letGo();
}

void DialView::letGo() {
    ensureNoTooltip();
    m_holdTime.stop();
    setKeepMouseGrab(false);
    setKeepTouchGrab(false);
    if (!m_finger)
        return;
    m_finger.reset();
    Q_EMIT pressedChanged();
}

void DialView::stepTo(float position) {
    showTooltip();
    m_bubbleTime.start(kBubbleMilliseconds, this);
    const float before = m_position;
    turnTo(DialGeometry::clamped(position));
    if (m_position != before)
        changedByPlayer();
}

void DialView::changedByPlayer() {
    updateAngle();
    if (m_target)
        m_target(*this);
    Q_EMIT valueChanged();
    if (Announcement::isWanted())
        m_announcement.start(kAnnouncementMilliseconds, this);  // takes back one still to come
}

// Events

void DialView::touchEvent(QTouchEvent* event) {
    event->accept();
    if (event->type() == QEvent::TouchCancel)
        return touchEnded();
    for (const QEventPoint& point : event->points()) {
        if (!m_finger && point.state() == QEventPoint::Pressed)
            touchBegan(point.id(), point.position(), event->timestamp());
        else if (m_finger != point.id())
            continue;  // one finger turns it
        else if (point.state() == QEventPoint::Updated)
            touchMoved(point.position(), isFine(event->modifiers()));
        else if (point.state() == QEventPoint::Released)
            tapEnded();
    }
}

void DialView::mousePressEvent(QMouseEvent* event) {
    if (m_finger)
        return;
    if (event->button() == Qt::RightButton)
        Q_EMIT menuAsked();
    else
        touchBegan(kMouse, event->position(), event->timestamp());
}

void DialView::mouseMoveEvent(QMouseEvent* event) {
    if (m_finger == kMouse)
        touchMoved(event->position(), isFine(event->modifiers()));
}

void DialView::mouseReleaseEvent(QMouseEvent* event) {
    if (m_finger == kMouse && event->button() == Qt::LeftButton)
        tapEnded();
}

void DialView::mouseUngrabEvent() {
    if (m_finger == kMouse)
        touchEnded();
}

void DialView::wheelEvent(QWheelEvent* event) {
    const QPoint angle = event->angleDelta();
    const int turned = angle.y() != 0 ? angle.y() : angle.x();  // some desktops turn it with Shift
    event->accept();
    if (m_finger || turned == 0)
        return;
    const float step = isFine(event->modifiers()) ? kStep * kFineTurn : kStep;
    stepTo(m_position + float(turned / kWheelNotch) * step);
}

void DialView::keyPressEvent(QKeyEvent* event) {
    if (m_menuOffered && asksForMenu(*event))
        return Q_EMIT menuAsked();
    const float step = keyStep(event->key(), event->modifiers());
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (step == 0 && !enters)
        return event->ignore();
    setFocusVisible(true);
    if (m_finger)
        return;
    if (step != 0)
        stepTo(m_position + step);
    else if (!event->isAutoRepeat())
        Q_EMIT doubleTapped();
}

void DialView::focusInEvent(QFocusEvent* event) {
    QQuickItem::focusInEvent(event);
    setFocusVisible(event->reason() != Qt::MouseFocusReason);
    Q_EMIT focusVisibleChanged();
}

void DialView::focusOutEvent(QFocusEvent* event) {
    QQuickItem::focusOutEvent(event);
    Q_EMIT focusVisibleChanged();
}

void DialView::setFocusVisible(bool visible) {
    if (visible == m_focusVisible)
        return;
    m_focusVisible = visible;
    Q_EMIT focusVisibleChanged();
}

void DialView::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    const bool leaves = change == ItemSceneChange || change == ItemParentHasChanged ||
                        (change == ItemVisibleHasChanged && !value.boolValue) ||
                        (change == ItemEnabledHasChanged && !value.boolValue);
    if (leaves)
        touchEnded();
    if (change == ItemSceneChange) {
        disconnect(m_windowHidden);
        if (value.window != nullptr)
            m_windowHidden =
                connect(value.window, &QWindow::visibleChanged, this, &DialView::touchEnded);
    }
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        redrawAll();
}

void DialView::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size())
        redrawAll();
}

// Drawing

void DialView::updateAngle() {
    update();
}

void DialView::redrawAll() {
    m_redrawAll = true;
    updateAngle();
}

qreal DialView::screenScale() const {
    return window() != nullptr ? window()->effectiveDevicePixelRatio() : 1;
}

QPointF DialView::notchCentre() const {
    return DialGeometry::notchCentre(middle(), m_position, m_notchRadius, screenScale());
}

QPointF DialView::lampCentre(std::uint32_t lamp) const {
    const float place = DialGeometry::lampPlace(lamp, lampCount());
    return DialGeometry::onArc(middle() + centreOffset(), place, lampRadius());
}

float DialView::lampAlpha(std::uint32_t lamp) const {
    return DialGeometry::lampAlpha(lamp, lampCount(), m_position);
}

QSGNode* DialView::updatePaintNode(QSGNode* old, UpdatePaintNodeData*) {
    auto* node = static_cast<DialNode*>(old);
    if (node == nullptr || m_redrawAll) {
        delete node;
        QList<QPointF> lamps;
        for (std::uint32_t lamp = 0; lamp < lampCount(); ++lamp)
            lamps.append(lampCentre(lamp));
        const qreal scale = screenScale();
        const auto face = DialFace::picture(size(), scale, Artwork::image(m_image, scale),
                                            Artwork::image(unlitDotName(), scale), lamps);
        const DialPictures pictures{face, Artwork::image("button-notch.png", scale),
                                    Artwork::image(litDotName(), scale),
                                    m_glyph.isEmpty() ? QImage() : Artwork::image(m_glyph, scale)};
        node = new DialNode(*window(), pictures, middle(), lamps);
        m_redrawAll = false;
    }
    node->setNotch(notchCentre());
    for (std::uint32_t lamp = 0; lamp < lampCount(); ++lamp)
        node->setLampAlpha(lamp, lampAlpha(lamp));
    return node;
}
