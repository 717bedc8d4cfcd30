#pragma once

#include <QBasicTimer>
#include <QPointer>
#include <QQuickItem>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "bubbles/PopupBubbleView.h"
#include "dial/DialDrag.h"
#include "dial/DialViewTooltipFormatting.h"
#include "dial/DoubleTap.h"
#include "touch/FingersItem.h"

/// A rotary knob that is turned by dragging across it, by the wheel and by keys. A notch on an arc
/// of 270 degrees and a ring of lamps show its position; a bubble shows its value while it is
/// turned. It follows one finger, or the mouse. Lengths are points. [main]
class DialView : public FingersItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(float value READ value WRITE setValue NOTIFY valueChanged)
    Q_PROPERTY(float normalisedValue READ normalisedValue NOTIFY normalisedValueChanged)
    Q_PROPERTY(float minValue READ minValue WRITE setMinValue)
    Q_PROPERTY(float maxValue READ maxValue WRITE setMaxValue)
    Q_PROPERTY(float minimumValue READ minValue STORED false)  // the names that screen readers ask
    Q_PROPERTY(float maximumValue READ maxValue STORED false)
    Q_PROPERTY(float stepSize READ stepSize STORED false)
    Q_PROPERTY(float tooltipScale READ tooltipScale WRITE setTooltipScale)
    Q_PROPERTY(float speedRatio READ speedRatio WRITE setSpeedRatio)
    Q_PROPERTY(QString tooltipFormat READ tooltipFormat WRITE setTooltipFormat)
    Q_PROPERTY(QString accessibleTooltipFormat READ accessibleTooltipFormat WRITE
                   setAccessibleTooltipFormat)
    Q_PROPERTY(int mode READ mode WRITE setMode)
    Q_PROPERTY(QString image READ image WRITE setImage)
    Q_PROPERTY(QString glyph READ glyph WRITE setGlyph)
    Q_PROPERTY(float notchRadius READ notchRadius WRITE setNotchRadius)
    Q_PROPERTY(QList<qreal> notches READ notches WRITE setNotches)
    Q_PROPERTY(QString spokenText READ spokenText NOTIFY spokenTextChanged)
    Q_PROPERTY(QQuickItem* bubbleContainer READ bubbleContainer WRITE setBubbleContainer)
    Q_PROPERTY(bool menuOffered READ menuOffered WRITE setMenuOffered)
    Q_PROPERTY(bool pressed READ isPressed NOTIFY pressedChanged)
    Q_PROPERTY(bool focusVisible READ isFocusVisible NOTIFY focusVisibleChanged)

  public:
    explicit DialView(QQuickItem* parent = nullptr);
    ~DialView() override;

    /// In the units of `minValue` and `maxValue`.
    float value() const;
    /// Not limited to the range; does not report. While QML makes the dial it waits for the range.
    void setValue(float value);
    /// The position on the arc, within [0, 1].
    float normalisedValue() const { return m_position; }

    /// These do not move the notch.
    float minValue() const { return m_minValue; }
    void setMinValue(float value) { m_minValue = value; }
    float maxValue() const { return m_maxValue; }
    void setMaxValue(float value) { m_maxValue = value; }
    float tooltipScale() const { return m_tooltipScale; }
    void setTooltipScale(float scale) { m_tooltipScale = scale; }
    /// Change of position for each point that a finger moves.
    float speedRatio() const { return m_speedRatio; }
    void setSpeedRatio(float ratio) { m_speedRatio = ratio; }
    /// With one floating-point placeholder, for `value` times `tooltipScale`; empty for no bubble.
    QString tooltipFormat() const { return m_tooltipFormat; }
    void setTooltipFormat(const QString& format) { m_tooltipFormat = format; }
    /// For a screen reader; empty: as `tooltipFormat`.
    QString accessibleTooltipFormat() const { return m_accessibleTooltipFormat; }
    void setAccessibleTooltipFormat(const QString& format) { m_accessibleTooltipFormat = format; }
    /// Writes the text in place of the formats; outlives the dial, or is taken away before.
    DialViewTooltipFormatting* tooltipFormatter() const { return m_tooltipFormatter; }
    void setTooltipFormatter(DialViewTooltipFormatting* formatter) {
        m_tooltipFormatter = formatter;
    }
    /// Which drags act: the bits of DialDrag.
    std::int32_t mode() const { return m_mode; }
    void setMode(std::int32_t mode) { m_mode = mode; }

    /// Pictures of the artwork: the face, and a small one in the middle of the knob, if any.
    QString image() const { return m_image; }
    void setImage(const QString& name);
    QString glyph() const { return m_glyph; }
    void setGlyph(const QString& name);
    float notchRadius() const { return m_notchRadius; }
    void setNotchRadius(float radius);

    /// Positions at which drags snap; of several that are near the first one added counts.
    Q_INVOKABLE void addNotchAt(float position) { m_notches.push_back(position); }
    QList<qreal> notches() const { return {m_notches.begin(), m_notches.end()}; }
    void setNotches(const QList<qreal>& notches) {
        m_notches.assign(notches.begin(), notches.end());
    }

    /// Told whenever the player has turned it, and at each move of a drag.
    void setTarget(std::function<void(DialView&)> target) { m_target = std::move(target); }
    /// Where the bubble floats; none: in the dial's parent.
    QQuickItem* bubbleContainer() const { return m_bubbleContainer; }
    void setBubbleContainer(QQuickItem* container) { m_bubbleContainer = container; }

    /// Whether a held finger, the right mouse button or the menu key asks for more. What a finger
    /// has turned before it was held is turned back.
    bool menuOffered() const { return m_menuOffered; }
    void setMenuOffered(bool offered);

    /// Puts notch and lamps where the position says.
    Q_INVOKABLE void updateAngle();
    Q_INVOKABLE QString formatTooltip(bool accessible) const;
    QString spokenText() const { return formatTooltip(true); }
    Q_INVOKABLE void ensureNoTooltip();
    /// A screen reader says the value.
    virtual void announce();
    /// A step by a screen reader; does not report.
    Q_INVOKABLE void accessibilityIncrement() { setValue(value() + stepSize()); }
    Q_INVOKABLE void accessibilityDecrement() { setValue(value() - stepSize()); }
    float stepSize() const { return 10 * m_speedRatio; }

    /// In the dial's coordinates; lamps in arc order.
    QPointF notchCentre() const;
    QPointF lampCentre(std::uint32_t lamp) const;
    /// How lit a lamp is, in [0, 1].
    float lampAlpha(std::uint32_t lamp) const;

    QPointF touchDownAt() const { return m_drag.touchDownAt(); }
    float touchedValue() const { return m_drag.touchedValue(); }
    PopupBubbleView* tooltip() const { return m_tooltip; }
    bool isPressed() const { return m_finger.has_value(); }
    /// It has the focus, and the player steers by keys.
    bool isFocusVisible() const { return m_focusVisible && hasActiveFocus(); }

    virtual std::uint32_t lampCount() const { return 16; }
    virtual float lampRadius() const { return 30; }
    virtual QString unlitDotName() const { return QStringLiteral("Meter-Dot.png"); }
    virtual QString litDotName() const { return QStringLiteral("Meter-Dot-Lit.png"); }
    /// Of the lamps' arc, from the middle of the dial.
    virtual QPointF centreOffset() const { return {}; }

  Q_SIGNALS:
    /// The player turned it: sent along with the target. Never for what is set from outside.
    void valueChanged();
    /// It shows another position, whoever changed it.
    void normalisedValueChanged();
    void spokenTextChanged();
    void pressedChanged();
    void focusVisibleChanged();
    /// Two taps or clicks in one place, or the return key.
    void doubleTapped();
    /// Only where it is offered.
    void menuAsked();

  protected:
    void componentComplete() override;
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void fingerPressed(int finger, QPointF at, quint64 time) override;
    void fingerMoved(int finger, QPointF to, quint64 time) override;
    void fingerReleased(int finger, quint64 time) override;
    void fingersCancelled() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

  private:
    void held();
    bool holds(QPointF to);
    void letGo();
    void stepTo(float position);
    void changedByPlayer();
    void showTooltip();
    void turnTo(float position);
    void setFocusVisible(bool visible);
    void redrawAll();
    qreal screenScale() const;
    QPointF middle() const { return {width() / 2, height() / 2}; }

    float m_position = 0;
    float m_minValue = 0;
    float m_maxValue = 1;
    float m_tooltipScale = 1;
    float m_speedRatio = 0.005f;
    float m_notchRadius = 16;
    std::int32_t m_mode = DialDrag::kHorizontal | DialDrag::kVertical;
    QString m_tooltipFormat;
    QString m_accessibleTooltipFormat;
    DialViewTooltipFormatting* m_tooltipFormatter = nullptr;
    QString m_image = QStringLiteral("dial-face.png");
    QString m_glyph;
    std::vector<float> m_notches;
    std::function<void(DialView&)> m_target;
    std::optional<float> m_valueWhenComplete;

    QPointer<QQuickItem> m_bubbleContainer;
    QPointer<PopupBubbleView> m_tooltip;
    std::optional<int> m_finger;  // the one that turns it
    DialDrag m_drag;
    DoubleTap m_taps;
    QBasicTimer m_bubbleTime;
    QBasicTimer m_holdTime;
    bool m_menuOffered = false;
    bool m_isHeld = false;  // and has not gone on turning
    QBasicTimer m_announcement;
    bool m_focusVisible = false;
    bool m_redrawAll = true;
};
