#include "keyboard/ScrollingKeyboardView.h"

#include <QQuickWindow>
#include <algorithm>
#include <cmath>

#include "keyboard/KeyboardLayout.h"
#include "keyboard/PixelScale.h"
#include "touch/InputLoss.h"

namespace {

constexpr int kScrollTime = 250;  // milliseconds
constexpr int kShortPress = 300;  // milliseconds: long enough for slow attacks to be heard
constexpr qreal kWheelPoints = 153 / 120.;  // three white keys for one notch of a wheel
constexpr FingerId kMouse{nullptr, 0};
constexpr FingerId kScreenReader{nullptr, 1};

std::size_t indexOf(const PianoKeyButton& key) {
    return static_cast<std::size_t>(key.tag());
}

FingerId fingerOf(const QTouchEvent& event, const QEventPoint& point) {
    return {event.device(), point.id()};
}

}  // namespace

ScrollingKeyboardView::ScrollingKeyboardView(QQuickItem* parent)
    : QQuickItem(parent),
      m_content(new QQuickItem(this)),
      m_fingers([this](QPointF at) { return keyAt(at); }) {
    setClip(true);
    setAcceptTouchEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    m_scroll.setDuration(kScrollTime);
    m_scroll.setEasingCurve(QEasingCurve::InOutQuad);
    m_shortly.setSingleShot(true);
    m_shortly.setInterval(kShortPress);
    connect(&m_scroll, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& x) { moveTo(x.toReal()); });
    connect(&m_shortly, &QTimer::timeout, this, [this] { m_fingers.cancelled(kScreenReader); });
}

ScrollingKeyboardView::~ScrollingKeyboardView() {
    releaseEverything();
    watch(nullptr);
    disconnect(this, &QQuickItem::windowChanged, nullptr,
               nullptr);  // we no longer are what we were
}

// Where it is, and how large.

void ScrollingKeyboardView::componentComplete() {
    QQuickItem::componentComplete();
    relayout();
}

void ScrollingKeyboardView::relayout() {
    if (!isComponentComplete())
        return;
    const qreal half = width() / 2;
    const bool first = m_keys.isEmpty();
    const qreal fraction = first ? 0 : (m_contentX + half) / (contentWidth() + width());
    KeyboardLayout::layoutKeyboard(*this);
    setContentX(first ? contentWidth() / 2 - half : fraction * (contentWidth() + width()) - half);
    m_fingers.findKeys();
}

void ScrollingKeyboardView::setLargeKeys(bool large) {
    if (large == m_largeKeys)
        return;
    m_largeKeys = large;
    relayout();
    Q_EMIT largeKeysChanged();
}

void ScrollingKeyboardView::setShowLabels(bool show) {
    if (show == m_showLabels)
        return;
    m_showLabels = show;
    relayout();
    Q_EMIT showLabelsChanged();
}

void ScrollingKeyboardView::setOverlay(QQuickItem* overlay) {
    if (overlay == m_overlay)
        return;
    m_overlay = overlay;
    if (overlay) {
        overlay->setParentItem(m_content);
        overlay->setWidth(contentWidth());
    }
    Q_EMIT overlayChanged();
}

void ScrollingKeyboardView::setContentSize(QSizeF size) {
    m_contentSize = size;
    m_content->setSize(size);
    if (m_overlay)
        m_overlay->setWidth(size.width());
    Q_EMIT contentSizeChanged();
}

void ScrollingKeyboardView::setContentX(qreal x) {
    m_scroll.stop();
    moveTo(x);
}

void ScrollingKeyboardView::moveTo(qreal x) {
    if (x == m_contentX)
        return;
    m_contentX = x;
    placeContent();
    Q_EMIT contentXChanged();
}

void ScrollingKeyboardView::scrollTo(qreal x, bool animated) {
    m_scroll.stop();
    if (!animated || m_scroll.duration() == 0) {
        moveTo(x);
        return;
    }
    m_scroll.setStartValue(m_contentX);
    m_scroll.setEndValue(x);
    m_scroll.start();
}

void ScrollingKeyboardView::scrollBy(qreal points) {
    const bool moving = m_scroll.state() == QAbstractAnimation::Running;
    const qreal from = moving ? m_scroll.endValue().toReal() : m_contentX;
    scrollTo(clamped(from + points), true);
}

qreal ScrollingKeyboardView::clamped(qreal x) const {
    return std::max(0., std::min(x, contentWidth() - width()));
}

void ScrollingKeyboardView::setScrollTime(int milliseconds) {
    if (milliseconds == m_scroll.duration())
        return;
    m_scroll.setDuration(milliseconds);
    Q_EMIT scrollTimeChanged();
}

/// On whole pixels, so that pictures stay sharp and are copied, not resampled.
void ScrollingKeyboardView::placeContent() {
    const qreal scale = m_pixelScale > 0 ? m_pixelScale : 1;
    m_content->setX(-std::round(m_contentX * scale) / scale);
    for (PianoKeyButton* const key : m_keys)
        key->setInView(key->x() + key->width() > m_contentX && key->x() < m_contentX + width());
}

void ScrollingKeyboardView::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() == before.size() || contentWidth() == 0)
        return;
    KeyboardLayout::layoutKeyboardVertically(*this);
    const qreal x = m_contentX + (before.width() - now.width()) / 2;  // the centre stays
    setContentX(contentWidth() > now.width() ? clamped(x) : (contentWidth() - now.width()) / 2);
    placeContent();
}

/// Pictures are chosen by the pixels in a point. They change with the screen and with a scene that
/// is scaled to the window, of which items are not told; so each frame asks.
void ScrollingKeyboardView::refreshScale() {
    const qreal scale = pixelScale(*this);
    if (scale == m_pixelScale)
        return;
    m_pixelScale = scale;
    placeContent();
    for (PianoKeyButton* const key : m_keys)
        key->update();
}

// The keys.

/// A key may be on its way to say that it was pressed, so it goes later.
void ScrollingKeyboardView::removeKeys() {
    m_fingers.cancelled(kScreenReader);
    m_fingers.releaseKeys();
    releasePlayed();
    m_keyboardButtons.fill(nullptr);
    for (PianoKeyButton* const key : m_keys) {
        key->setParentItem(nullptr);
        key->deleteLater();
    }
    m_keys.clear();
}

PianoKeyButton* ScrollingKeyboardView::insertKey() {
    auto* const key = new PianoKeyButton(m_content);
    key->setParent(m_content);
    if (m_overlay)
        key->stackBefore(m_overlay);
    m_keys.append(key);
    return key;
}

PianoKeyButton* ScrollingKeyboardView::keyAt(QPointF point) const {
    if (point.x() < 0 || point.x() >= width() || point.y() < 0 || point.y() >= height())
        return nullptr;
    const QPointF inContent = point + QPointF(m_contentX, 0);
    const auto found = std::find_if(
        m_keys.crbegin(), m_keys.crend(),
        [&](const PianoKeyButton* key) { return key->contains(inContent - key->position()); });
    return found == m_keys.crend() ? nullptr : *found;
}

void ScrollingKeyboardView::tinkle(const PianoKeyButton& key) {
    m_touched.set(indexOf(key));
    Q_EMIT tinkleIvory(key.tag());
}

void ScrollingKeyboardView::untinkle(const PianoKeyButton& key) {
    m_touched.reset(indexOf(key));
    if (m_played.test(indexOf(key)))
        showKey(key.tag(), true);  // the computer's keyboard holds it still
    else
        Q_EMIT untinkleIvory(key.tag());
}

void ScrollingKeyboardView::playKey(int key, bool down) {
    const auto index = static_cast<std::size_t>(key);
    if (down && !(isEnabled() && isVisible() && m_keyboardButtons[index]))
        return;
    if (m_played.test(index) == down)
        return;
    m_played.set(index, down);
    if (m_touched.test(index) && !down)
        return;
    m_keyboardButtons[index]->setHighlighted(down);
    Q_EMIT down ? tinkleIvory(key) : untinkleIvory(key);
}

void ScrollingKeyboardView::releasePlayed() {
    for (int key = 0; key < kKeyCount; ++key)
        playKey(key, false);
}

void ScrollingKeyboardView::releaseEverything() {
    m_fingers.cancelAll();
    releasePlayed();
}

void ScrollingKeyboardView::showKey(int key, bool highlighted) {
    if (key < 0 || key >= kKeyCount || !m_keyboardButtons[static_cast<std::size_t>(key)])
        return;
    if (!highlighted)
        m_touched.reset(static_cast<std::size_t>(key));
    m_keyboardButtons[static_cast<std::size_t>(key)]->setHighlighted(highlighted);
}

/// A screen reader's press is one short touch; it has no end of its own.
void ScrollingKeyboardView::pressShortly() {
    auto* const key = qobject_cast<PianoKeyButton*>(sender()->parent());
    if (!key || !isEnabled())
        return;
    m_fingers.began(kScreenReader, {}, key);
    m_shortly.start();
}

// Fingers, and what takes them away.

void ScrollingKeyboardView::touchEvent(QTouchEvent* event) {
    event->accept();
    if (event->type() == QEvent::TouchCancel) {
        m_fingers.cancelWhere([&](FingerId id) { return id.device == event->device(); });
        return;
    }
    // What is let go comes first: a key that one finger leaves as another arrives must sound.
    for (const QEventPoint& point : event->points()) {
        if (point.state() == QEventPoint::Released)
            m_fingers.ended(fingerOf(*event, point), point.position());
    }
    for (const QEventPoint& point : event->points()) {
        if (point.state() == QEventPoint::Updated)
            m_fingers.moved(fingerOf(*event, point), point.position());
    }
    for (const QEventPoint& point : event->points()) {
        const FingerId finger = fingerOf(*event, point);
        // Where another finger is beside the view, Qt delivers a press twice.
        if (point.state() == QEventPoint::Pressed && !m_fingers.isDown(finger))
            m_fingers.began(finger, point.position());
    }
    setKeepTouchGrab(true);
}

void ScrollingKeyboardView::touchUngrabEvent() {
    m_fingers.cancelWhere([](FingerId id) { return id.device != nullptr; });
}

void ScrollingKeyboardView::mousePressEvent(QMouseEvent* event) {
    setKeepMouseGrab(true);
    m_fingers.began(kMouse, event->position());
}

/// The press that it follows was played already.
void ScrollingKeyboardView::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
}

void ScrollingKeyboardView::mouseMoveEvent(QMouseEvent* event) {
    m_fingers.moved(kMouse, event->position());
}

void ScrollingKeyboardView::mouseReleaseEvent(QMouseEvent* event) {
    m_fingers.ended(kMouse, event->position());
}

void ScrollingKeyboardView::mouseUngrabEvent() {
    m_fingers.cancelled(kMouse);
}

void ScrollingKeyboardView::wheelEvent(QWheelEvent* event) {
    scrollByWheel(*event);
}

void ScrollingKeyboardView::scrollByWheel(const QWheelEvent& event) {
    const QPoint turn = event.angleDelta();
    scrollBy(-(turn.x() != 0 ? turn.x() : turn.y()) * kWheelPoints);
}

void ScrollingKeyboardView::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange)
        watch(data.window);
    if (change == ItemSceneChange || change == ItemVisibleHasChanged ||
        change == ItemEnabledHasChanged)
        releaseEverything();
    QQuickItem::itemChange(change, data);
}

void ScrollingKeyboardView::watch(QQuickWindow* window) {
    if (m_watched) {
        m_watched->removeEventFilter(this);
        m_watched->disconnect(this);
    }
    m_watched = window;
    if (!window)
        return;
    window->installEventFilter(this);
    connect(window, &QQuickWindow::afterAnimating, this, &ScrollingKeyboardView::refreshScale);
}

bool ScrollingKeyboardView::eventFilter(QObject*, QEvent* event) {
    if (losesInput(*event, *m_watched))
        releaseEverything();
    else if (event->type() == QEvent::TouchBegin || event->type() == QEvent::TouchUpdate ||
             event->type() == QEvent::TouchEnd)
        dropLostFingers(*static_cast<QTouchEvent*>(event));
    return false;
}

/// A touch event of the window names every finger that is on the screen. One that it does not name,
/// or that is pressed anew, has gone without a word; one that another item has taken will not be
/// told to us again.
void ScrollingKeyboardView::dropLostFingers(const QTouchEvent& event) {
    m_fingers.cancelWhere([&](FingerId id) {
        if (id.device != event.device())
            return false;
        return std::ranges::none_of(event.points(), [&](const QEventPoint& point) {
            return point.id() == id.number && point.state() != QEventPoint::Pressed &&
                   event.exclusiveGrabber(point) == this;
        });
    });
}
