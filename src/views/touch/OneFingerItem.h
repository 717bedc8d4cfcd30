#pragma once

#include <QQuickPaintedItem>
#include <optional>

/// A painted item that follows one finger at a time: a touch, or the mouse with its left button.
/// Until that one lifts, others are ignored. Whatever takes the finger away without lifting it (the
/// system, another item, the item or its window being hidden or disabled) is told as a cancel, so
/// that no drag is left hanging. [main]
class OneFingerItem : public QQuickPaintedItem {
    Q_OBJECT

  public:
    explicit OneFingerItem(QQuickItem* parent = nullptr);

    /// Positions are in points of the item, and may lie outside it once a touch has begun.
    virtual void touchBegan(QPointF at) = 0;
    virtual void touchMoved(QPointF at) = 0;
    virtual void touchEnded() = 0;
    virtual void touchCancelled() = 0;

  protected:
    void touchEvent(QTouchEvent* event) override;
    void touchUngrabEvent() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

  private:
    void began(int finger, QPointF at);
    void moved(int finger, QPointF at);
    void ended(int finger);
    void cancel();
    void followWindow(QQuickWindow* window);

    std::optional<int> m_finger;  // the one that is followed
    QMetaObject::Connection m_windowShown;
};
