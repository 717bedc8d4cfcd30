#pragma once

#include <QPointer>
#include <optional>

#include "keyboard/ScrollingKeyboardView.h"
#include "touch/FingersItem.h"

class Picture;

/// The whole keyboard in miniature. It darkens what is outside the part of its target that is seen,
/// and scrolls the target: a touch beside the lit part centres there, a drag of the lit part moves
/// it. One finger at a time. [main]
class OverviewScroller : public FingersItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ScrollingKeyboardView* target READ target WRITE setTarget NOTIFY targetChanged)
    Q_PROPERTY(float highlightX READ highlightX NOTIFY shadersLaidOut)
    Q_PROPERTY(float highlightSize READ highlightSize NOTIFY shadersLaidOut)

  public:
    explicit OverviewScroller(QQuickItem* parent = nullptr);

    /// Not owned. Every scroll of it lays out the shaders.
    ScrollingKeyboardView* target() const { return m_target; }
    void setTarget(ScrollingKeyboardView* target);

    /// The lit part, in points of the overview.
    float highlightX() const { return m_highlightX; }
    float highlightSize() const { return m_highlightSize; }
    QRectF leftShader() const { return m_leftShader; }
    QRectF rightShader() const { return m_rightShader; }

    /// Where the latest touch began, in points of the overview.
    float touchX() const { return m_touchX; }
    /// The target's offset when its lit part was last taken hold of.
    float initialX() const { return m_initialX; }
    /// Whether moves drag; once true it stays so.
    bool dragging() const { return m_dragging; }

    void layoutShaders();
    /// Scrolls, animated, so that the place at x (points of the overview) is in the middle, or as
    /// near to it as the ends allow.
    void centreAround(float x);
    Q_INVOKABLE void scrollByOctaves(int octaves);
    void scrollViewDidScroll() { layoutShaders(); }

  Q_SIGNALS:
    void targetChanged();
    void shadersLaidOut();

  protected:
    void geometryChange(const QRectF& now, const QRectF& before) override;
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData*) override;
    void fingerPressed(int finger, QPointF at, quint64 time) override;
    void fingerMoved(int finger, QPointF to, quint64 time) override;
    void fingerReleased(int finger, quint64 time) override;
    void fingersCancelled() override { m_finger.reset(); }
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void commonInit();
    bool hasTarget() const { return m_target && m_target->width() > 0 && width() > 0; }

    Picture* m_picture;
    QRectF m_leftShader;
    QRectF m_rightShader;
    QPointer<ScrollingKeyboardView> m_target;
    float m_highlightX = 0;
    float m_highlightSize = 0;
    float m_touchX = 0;
    float m_initialX = 0;
    bool m_dragging = false;
    std::optional<int> m_finger;  // the one that scrolls
};
