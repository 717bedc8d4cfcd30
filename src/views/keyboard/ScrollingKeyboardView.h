#pragma once

#include <QQuickItem>
#include <QTimer>
#include <QVariantAnimation>
#include <array>
#include <bitset>

#include "keyboard/KeyFingers.h"
#include "keyboard/KeySizes.h"
#include "notes/Notes.h"

/// The piano: 88 keys in a strip that is scrolled sideways by others, because a drag on the keys
/// plays. Every finger is followed by itself. `tinkleIvory` and `untinkleIvory` are emitted from
/// within the delivery of the touch. Whatever takes the fingers away (the window is left or hidden,
/// the item is disabled, the keys are laid out anew) releases what they hold. [main]
class ScrollingKeyboardView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal contentX READ contentX WRITE setContentX NOTIFY contentXChanged)
    Q_PROPERTY(qreal contentWidth READ contentWidth NOTIFY contentSizeChanged)
    Q_PROPERTY(bool largeKeys READ largeKeys WRITE setLargeKeys NOTIFY largeKeysChanged)
    Q_PROPERTY(bool showLabels READ showLabels WRITE setShowLabels NOTIFY showLabelsChanged)
    Q_PROPERTY(QQuickItem* overlay READ overlay WRITE setOverlay NOTIFY overlayChanged)
    Q_PROPERTY(int scrollTime READ scrollTime WRITE setScrollTime NOTIFY scrollTimeChanged)

  public:
    explicit ScrollingKeyboardView(QQuickItem* parent = nullptr);
    ~ScrollingKeyboardView() override;

    /// Offset of the visible part in the content, points; set at once, to any value.
    qreal contentX() const { return m_contentX; }
    void setContentX(qreal x);
    /// Animated, or at once; not clamped either.
    Q_INVOKABLE void scrollTo(qreal x, bool animated);
    /// Moves by points, animated, and stays within the content.
    Q_INVOKABLE void scrollBy(qreal points);
    /// Three white keys for one notch of a wheel that is turned over us, or over our overview.
    void scrollByWheel(const QWheelEvent& event);
    /// The nearest offset that shows nothing but keys, where there are enough.
    qreal clamped(qreal x) const;

    /// Points.
    QSizeF contentSize() const { return m_contentSize; }
    qreal contentWidth() const { return m_contentSize.width(); }
    void setContentSize(QSizeF size);

    bool largeKeys() const { return m_largeKeys; }
    void setLargeKeys(bool large);
    bool showLabels() const { return m_showLabels; }
    void setShowLabels(bool show);

    /// Lies above the keys, over their whole width, and cannot be touched.
    QQuickItem* overlay() const { return m_overlay; }
    void setOverlay(QQuickItem* overlay);

    /// Milliseconds of an animated scroll.
    int scrollTime() const { return m_scroll.duration(); }
    void setScrollTime(int milliseconds);

    /// The keys in the order of pitch.
    const std::array<PianoKeyButton*, kKeyCount>& keyboardButtons() const {
        return m_keyboardButtons;
    }
    std::array<PianoKeyButton*, kKeyCount>& keyboardButtons() { return m_keyboardButtons; }

    /// What the layout does with keys: takes all away, and adds one above the others.
    void removeKeys();
    PianoKeyButton* insertKey();
    /// All keys, in the order in which they lie above each other.
    const QList<PianoKeyButton*>& keys() const { return m_keys; }

    /// The topmost key at a point of the view; null beside the keys, and outside the view.
    PianoKeyButton* keyAt(QPointF point) const;

    /// What the keys' targets call.
    void tinkle(const PianoKeyButton& key);
    void untinkle(const PianoKeyButton& key);

    /// Presses or releases a key for the computer's keyboard. A key that a finger holds as well
    /// sounds until both have let it go.
    void playKey(int key, bool down);

    /// Releases all that fingers and the computer's keyboard hold.
    Q_INVOKABLE void releaseEverything();

  public Q_SLOTS:
    /// Shows a key that MIDI has pressed or released. 0 to 87; others are ignored.
    void showKey(int key, bool highlighted);

  Q_SIGNALS:
    void tinkleIvory(int key);
    void untinkleIvory(int key);
    void contentXChanged();
    void contentSizeChanged();
    void largeKeysChanged();
    void showLabelsChanged();
    void overlayChanged();
    void scrollTimeChanged();

  protected:
    void componentComplete() override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    bool eventFilter(QObject* window, QEvent* event) override;
    void touchEvent(QTouchEvent* event) override;
    void touchUngrabEvent() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void wheelEvent(QWheelEvent* event) override;

  private Q_SLOTS:
    void pressShortly();

  private:
    using Keys = std::bitset<kKeyCount>;

    void relayout();
    void watch(QQuickWindow* window);
    void moveTo(qreal x);
    void placeContent();
    void refreshScale();
    void releasePlayed();
    void dropLostFingers(const QTouchEvent& event);

    QQuickItem* m_content;
    QPointer<QQuickItem> m_overlay;
    QList<PianoKeyButton*> m_keys;
    QPointer<QQuickWindow> m_watched;
    QVariantAnimation m_scroll;
    QTimer m_shortly;
    KeyFingers m_fingers;
    Keys m_touched;  ///< pressed by fingers, which have not released them
    Keys m_played;   ///< held by the computer's keyboard
    std::array<PianoKeyButton*, kKeyCount> m_keyboardButtons{};
    QSizeF m_contentSize;
    qreal m_contentX = 0;
    qreal m_pixelScale = 0;
    bool m_largeKeys = false;
    bool m_showLabels = true;
};
