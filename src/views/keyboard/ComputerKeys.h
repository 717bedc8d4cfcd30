#pragma once

#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPointer>
#include <QQuickWindow>
#include <array>
#include <bitset>

#include "keyboard/KeyPosition.h"
#include "keyboard/ScrollingKeyboardView.h"

/// Plays the keys of its target from the computer's keyboard, two octaves at a time; the bracket
/// keys move by an octave, the space bar holds what is let go until it is let go itself. Keys are
/// left alone while a text is edited, and with Ctrl, Alt or Meta; the space bar also where a button
/// shows that it has the keyboard's focus. When the window is left, everything is released. [main]
class ComputerKeys : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ScrollingKeyboardView* target READ target WRITE setTarget NOTIFY targetChanged)
    Q_PROPERTY(int lowestKey READ lowestKey NOTIFY lowestKeyChanged)

  public:
    explicit ComputerKeys(QObject* parent = nullptr);
    ~ComputerKeys() override;

    /// Not owned. We listen to the window that it is in.
    ScrollingKeyboardView* target() const { return m_target; }
    void setTarget(ScrollingKeyboardView* target);

    /// The key that Z plays; -9 to 75, so that the highest and the lowest key of all are reached.
    int lowestKey() const { return m_lowestKey; }

    Q_INVOKABLE void releaseAll();

  Q_SIGNALS:
    void targetChanged();
    void lowestKeyChanged();
    /// Escape was pressed: what is open above all others is to be closed.
    void closeTop();
    /// Escape was pressed again within half a second.
    void silenceEverything();

  protected:
    bool eventFilter(QObject* window, QEvent* event) override;

  private:
    static constexpr int kPositions = 24;
    static constexpr int kNone = -1;

    void watch(QQuickWindow* window);
    bool keyPressed(const QKeyEvent& event);
    bool keyReleased(const QKeyEvent& event);
    bool mayTake(const QKeyEvent& event, KeyPosition::Role role) const;
    void act(KeyPosition position);
    void press(int semitone);
    void release(int semitone);
    void releaseHeld();
    void moveBy(int keys);
    void escape(bool mayClose);
    bool isPressed(int key) const;

    QPointer<ScrollingKeyboardView> m_target;
    QPointer<QQuickWindow> m_window;
    QElapsedTimer m_sinceEscape;
    std::array<int, kPositions> m_pressed;  ///< the key that each position has pressed, or none
    std::bitset<kKeyCount> m_held;          ///< let go, but held by the space bar
    bool m_hold = false;
    int m_lowestKey;
};
