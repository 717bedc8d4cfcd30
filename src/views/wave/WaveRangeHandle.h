#pragma once

#include <QBasicTimer>
#include <QPointer>

#include "bubbles/PopupBubbleView.h"
#include "dial/DoubleTap.h"
#include "touch/FingersItem.h"
#include "wave/WaveRangeEdges.h"

class Picture;
class WaveRangeHandle;

/// What is done with a handle. Lengths are points of the handle's parent.
class WaveRangeHandleDelegate {
  public:
    virtual ~WaveRangeHandleDelegate() = default;
    /// The edge is wanted at this place, which may lie outside.
    virtual void handleDragged(WaveRangeHandle& handle, qreal edgeX) = 0;
    /// Nothing holds it any more, however that came.
    virtual void handleLetGo(WaveRangeHandle& handle) = 0;
    virtual void handleDoubleTapped(WaveRangeHandle& handle) = 0;
    /// A number of points, or of frames.
    virtual void handleStepped(WaveRangeHandle& handle, int steps, bool ofFrames) = 0;
    virtual void handleSentTo(WaveRangeHandle& handle, bool end) = 0;
    /// The keyboard's focus came.
    virtual void handleFocused(WaveRangeHandle& handle) = 0;
};

/// A grip at one edge of the selection: one finger or the mouse drags it, keys move it, and while
/// it is held a bubble tells its time. At the ends of its parent the grip stays inside, beside its
/// edge. [main]
class WaveRangeHandle : public FingersItem {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to a WaveRangeView2")
    Q_PROPERTY(bool pressed READ isPressed NOTIFY pressedChanged)
    Q_PROPERTY(bool focusVisible READ isFocusVisible NOTIFY focusVisibleChanged)
    Q_PROPERTY(bool inView READ isInView NOTIFY inViewChanged)
    // What screen readers look for: seconds.
    Q_PROPERTY(qreal value READ value NOTIFY valueChanged)
    Q_PROPERTY(qreal minimumValue READ minimumValue CONSTANT)
    Q_PROPERTY(qreal maximumValue READ maximumValue NOTIFY valueChanged)

  public:
    static constexpr QSizeF kSize{44, 48};

    /// The delegate is the parent.
    WaveRangeHandle(WaveRangeEdges::Edge edge, const QString& name, QQuickItem& parent,
                    WaveRangeHandleDelegate& delegate);

    WaveRangeEdges::Edge edge() const { return m_edge; }
    /// At that place of the parent, as far as the parent reaches; not to be seen or touched there
    /// while its edge is out of view.
    void place(qreal edgeX, qreal y, bool inView);
    /// What it stands at, in frames.
    void tell(int frame, int length);

    bool isPressed() const { return m_finger.has_value(); }
    bool isFocusVisible() const { return m_focusVisible && hasActiveFocus(); }
    bool isInView() const { return m_inView; }
    qreal value() const { return m_value; }
    qreal minimumValue() const { return 0; }
    qreal maximumValue() const { return m_maximum; }
    PopupBubbleView* bubble() const { return m_bubble; }

    bool contains(const QPointF& point) const override;

  public Q_SLOTS:
    // As a screen reader asks.
    void increase() { m_delegate.handleStepped(*this, 1, false); }
    void decrease() { m_delegate.handleStepped(*this, -1, false); }

  Q_SIGNALS:
    void pressedChanged();
    void focusVisibleChanged();
    void inViewChanged();
    void valueChanged();

  protected:
    void fingerPressed(int finger, QPointF at, quint64 time) override;
    void fingerMoved(int finger, QPointF to, quint64 time) override;
    void fingerReleased(int finger, quint64 time) override;
    void fingersCancelled() override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

  private:
    void letGo();
    void step(int direction, Qt::KeyboardModifiers modifiers);
    void showBubble();
    void showBubbleShortly();
    void placeBubble();
    void hideBubble();
    void setFocusVisible(bool visible);
    QPointF inParent(QPointF at) const { return at + position(); }

    const WaveRangeEdges::Edge m_edge;
    const QString m_name;
    WaveRangeHandleDelegate& m_delegate;
    Picture* m_picture;
    QPointer<PopupBubbleView> m_bubble;
    QBasicTimer m_bubbleTime;
    std::optional<int> m_finger;
    DoubleTap m_taps;
    qreal m_offset = 0;  // from the edge to the finger
    qreal m_edgeX = 0;   // in the parent
    bool m_inView = false;
    bool m_focusVisible = false;
    QString m_text;
    qreal m_value = 0;
    qreal m_maximum = 0;
};
