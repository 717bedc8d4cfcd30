#pragma once

#include <QEventPoint>
#include <QPoint>
#include <QWindow>
#include <map>

/// Real touch events of up to ten fingers on a window, in its coordinates. Fingers that are not
/// named by a call stay where they are.
class Fingers {
  public:
    explicit Fingers(QWindow& window) : m_window(window) {}

    void press(int finger, QPoint at) { send({{finger, {QEventPoint::Pressed, at}}}); }
    void move(int finger, QPoint to) { send({{finger, {QEventPoint::Updated, to}}}); }
    void release(int finger) { release(finger, m_down.at(finger)); }
    void release(int finger, QPoint at) { send({{finger, {QEventPoint::Released, at}}}); }
    /// Several fingers move in one event.
    void move(const std::map<int, QPoint>& fingers);
    /// All are taken away by the system.
    void cancel();

  private:
    struct Change {
        QEventPoint::State state;
        QPoint at;
    };
    void send(const std::map<int, Change>& changes);

    QWindow& m_window;
    std::map<int, QPoint> m_down;
};
