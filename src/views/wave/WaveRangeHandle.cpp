#include "wave/WaveRangeHandle.h"

#include <QKeyEvent>
#include <QRegularExpression>
#include <algorithm>
#include <utility>

#include "artwork/Picture.h"
#include "dial/Announcement.h"
#include "keyboard/AccessibleItem.h"
#include "screens/WaveTime.h"

namespace {

constexpr QSizeF kPicture{40, 48};
constexpr qreal kPictureMargin = 8;  // of the picture, for its shadow
constexpr qreal kGripTop = 7;
constexpr int kManySteps = 10;
constexpr int kBubbleMilliseconds = 1000;
constexpr qreal kFramesPerSecond = 44100;

}  // namespace

WaveRangeHandle::WaveRangeHandle(WaveRangeEdges::Edge edge, const QString& name, QQuickItem& parent,
                                 WaveRangeHandleDelegate& delegate)
    : FingersItem(&parent),
      m_edge(edge),
      m_name(name),
      m_delegate(delegate),
      m_picture(new Picture(this)) {
    setSize(kSize);
    setActiveFocusOnTab(true);
    setCursor(Qt::SizeHorCursor);
    m_picture->setSize(kPicture);
    m_picture->setName("wave-handle.png");
    m_picture->setVisible(false);
    describeItem(*this, QAccessible::Slider, m_name);
    onAccessibleSteps(*this, *this, SLOT(increase()), SLOT(decrease()));
    connect(this, &WaveRangeHandle::pressedChanged, m_picture, [this] {
        m_picture->setName(isPressed() ? "wave-handle-held.png" : "wave-handle.png");
    });
}

void WaveRangeHandle::place(qreal edgeX, qreal y, bool inView) {
    const qreal right = parentItem()->width();
    const auto inside = [right](qreal x, qreal width, qreal margin) {
        return std::clamp(x - width / 2, -margin, std::max(-margin, right + margin - width));
    };
    m_edgeX = edgeX;
    if (std::exchange(m_inView, inView) != inView)
        Q_EMIT inViewChanged();
    setPosition({inside(edgeX, width(), 0), y});
    m_picture->setX(inside(edgeX, kPicture.width(), kPictureMargin) - x());
    m_picture->setVisible(inView);
    placeBubble();
}

void WaveRangeHandle::tell(int frame, int length) {
    const QString text = WaveTime::text(frame);
    const qreal now = frame / kFramesPerSecond;
    const qreal most = length / kFramesPerSecond;
    if (now == m_value && most == m_maximum && text == m_text)
        return;
    m_value = now;
    m_maximum = most;
    m_text = text;
    describeItem(*this, QAccessible::Slider, m_name, text);
    if (m_bubble)
        m_bubble->setText(text);
    Q_EMIT valueChanged();
}

bool WaveRangeHandle::contains(const QPointF& point) const {
    return (m_inView || isPressed()) && QQuickItem::contains(point);
}

// Fingers

void WaveRangeHandle::fingerPressed(int finger, QPointF at, quint64 time) {
    if (m_finger)
        return;
    m_finger = finger;
    m_offset = inParent(at).x() - m_edgeX;
    m_taps.pressed(time, inParent(at));
    forceActiveFocus(Qt::MouseFocusReason);
    showBubble();
    Q_EMIT pressedChanged();
}

void WaveRangeHandle::fingerMoved(int finger, QPointF to, quint64) {
    if (m_finger != finger)
        return;
    m_taps.moved(inParent(to));
    m_delegate.handleDragged(*this, inParent(to).x() - m_offset);
}

void WaveRangeHandle::fingerReleased(int finger, quint64) {
    if (m_finger != finger)
        return;
    const bool twice = m_taps.released();
    letGo();
    if (twice)
        m_delegate.handleDoubleTapped(*this);
}

void WaveRangeHandle::fingersCancelled() {
    m_taps.cancel();
    hideBubble();
    if (m_finger)
        letGo();
}

void WaveRangeHandle::letGo() {
    m_finger.reset();
    hideBubble();
    m_delegate.handleLetGo(*this);
    Q_EMIT pressedChanged();
}

// Keys

void WaveRangeHandle::keyPressEvent(QKeyEvent* event) {
    setFocusVisible(true);
    switch (event->key()) {
        case Qt::Key_Left:
            return step(-1, event->modifiers());
        case Qt::Key_Right:
            return step(1, event->modifiers());
        case Qt::Key_Home:
        case Qt::Key_End:
            m_delegate.handleSentTo(*this, event->key() == Qt::Key_End);
            return showBubbleShortly();
        default:
            event->ignore();
    }
}

void WaveRangeHandle::step(int direction, Qt::KeyboardModifiers modifiers) {
    const bool frames = modifiers & Qt::ControlModifier;
    const bool many = !frames && (modifiers & Qt::ShiftModifier);
    m_delegate.handleStepped(*this, direction * (many ? kManySteps : 1), frames);
    showBubbleShortly();
}

void WaveRangeHandle::focusInEvent(QFocusEvent* event) {
    FingersItem::focusInEvent(event);
    setFocusVisible(event->reason() != Qt::MouseFocusReason);
    m_delegate.handleFocused(*this);
}

void WaveRangeHandle::focusOutEvent(QFocusEvent* event) {
    FingersItem::focusOutEvent(event);
    setFocusVisible(false);
    if (!isPressed())
        hideBubble();
}

void WaveRangeHandle::setFocusVisible(bool visible) {
    m_focusVisible = visible;
    Q_EMIT focusVisibleChanged();
}

// Its bubble

void WaveRangeHandle::showBubble() {
    if (m_bubble || !window())
        return;
    m_bubble = PopupBubbleView::popupBubbleWithTarget(this, window()->contentItem());
    m_bubble->setText(QString(m_text).replace(QRegularExpression("\\d"), "0"));  // the widest
    m_bubble->sizeToFit();
    m_bubble->setText(m_text);
    placeBubble();
}

void WaveRangeHandle::placeBubble() {
    if (!m_bubble)
        return;
    m_bubble->setVisible(m_inView);
    m_bubble->setArrowTarget({m_picture->x() + kPicture.width() / 2, kGripTop});
    m_bubble->keepInside();
}

void WaveRangeHandle::showBubbleShortly() {
    showBubble();
    m_bubbleTime.start(kBubbleMilliseconds, this);
    if (Announcement::isWanted())
        Announcement::post(*this, m_value);
}

void WaveRangeHandle::hideBubble() {
    m_bubbleTime.stop();
    if (m_bubble)
        m_bubble->dismiss();
    m_bubble = nullptr;
}

void WaveRangeHandle::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_bubbleTime.timerId())
        return FingersItem::timerEvent(event);
    m_bubbleTime.stop();
    if (!isPressed())
        hideBubble();
}
