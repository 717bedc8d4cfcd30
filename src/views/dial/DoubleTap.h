#pragma once

#include <QPointF>
#include <QtGlobal>

/// Tells two quick taps in one place, of a finger or of the mouse, from drags. [main]
class DoubleTap {
  public:
    /// Milliseconds of the event's own clock; points.
    void pressed(quint64 time, QPointF at);
    void moved(QPointF to);
    /// True at the end of the second tap.
    bool released();
    /// What goes on now is no tap.
    void cancel();

  private:
    bool m_still = false;
    bool m_second = false;
    bool m_hasFirst = false;
    quint64 m_pressTime = 0;
    QPointF m_pressAt;
};
