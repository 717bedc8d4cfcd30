#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <vector>

/// An item that follows every finger on it, the mouse with its left button being one more. Whatever
/// takes fingers away without lifting them (the system, another item, the item or its window being
/// hidden, disabled or left) is told as a cancel, so that nothing is left hanging. [main]
class FingersItem : public QQuickItem {
    Q_OBJECT

  public:
    explicit FingersItem(QQuickItem* parent = nullptr);
    ~FingersItem() override;

  protected:
    /// Points of the item, which may lie outside it once a touch has begun; milliseconds of the
    /// events' own clock.
    virtual void fingerPressed(int finger, QPointF at, quint64 time) = 0;
    virtual void fingerMoved(int finger, QPointF to, quint64 time) = 0;
    virtual void fingerReleased(int finger, quint64 time) = 0;
    /// All of them are gone, if there were any.
    virtual void fingersCancelled() = 0;
    /// Keys that are held with the finger that is being told about.
    Qt::KeyboardModifiers modifiers() const { return m_modifiers; }

    void touchEvent(QTouchEvent* event) override;
    void touchUngrabEvent() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    bool eventFilter(QObject* window, QEvent* event) override;

  private:
    void watch(QQuickWindow* window);
    void pressed(int finger, QPointF at, quint64 time);
    void released(int finger, quint64 time);
    void cancel();
    void cancelLost(const QTouchEvent& event);

    std::vector<int> m_down;
    Qt::KeyboardModifiers m_modifiers;
    QPointer<QQuickWindow> m_watched;
};
