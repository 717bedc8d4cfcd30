#pragma once

#include <QQuickItem>
#include <optional>

/// A button that works while it is held: by one finger, the mouse, or Space or Enter while it has
/// the focus; whoever came first holds it. Whatever takes that away without letting go (the system,
/// another item, the item or its window hidden, disabled or no longer active) lets go too. [main]
class HoldButton : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool held READ held NOTIFY heldChanged)

  public:
    explicit HoldButton(QQuickItem* parent = nullptr);

    bool held() const { return m_holder.has_value(); }

  Q_SIGNALS:
    void heldChanged();
    void pressed();
    void released();

  protected:
    void touchEvent(QTouchEvent* event) override;
    void touchUngrabEvent() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    /// `kind` tells fingers, mouse and keys apart, `number` which of them.
    struct Holder {
        enum class Kind { finger, mouse, key } kind;
        int number = 0;
        bool operator==(const Holder&) const = default;
    };
    void hold(Holder holder);
    void release(Holder holder);
    void letGo();
    bool heldBy(Holder::Kind kind) const { return m_holder && m_holder->kind == kind; }

    std::optional<Holder> m_holder;
    QQuickWindow* m_watched = nullptr;
};
