#pragma once

#include <QPointF>
#include <QtGlobal>
#include <vector>

#include "wave/Fling.h"

/// What fingers on a wave ask for. Points of the view.
class WaveGesturesDelegate {
  public:
    virtual ~WaveGesturesDelegate() = default;
    virtual void scrolled(double /*points*/) {}
    /// Closer for a factor above 1.
    virtual void zoomed(double /*about*/, double /*factor*/) {}
    /// The last finger of a drag or pinch has gone; `flies` if it was thrown.
    virtual void dropped(bool /*flies*/) {}
    virtual void tapped(double /*x*/) {}
    virtual void doubleTapped() {}
    virtual void scrubbed(double /*x*/) {}
    virtual void scrubEnded() {}
};

/// Tells drags, pinches, taps, double taps and held fingers apart. What was a drag or a pinch does
/// not become a tap or a hold, and whatever begins ends, if only by `cancel`. [main]
class WaveGestures {
  public:
    static constexpr int kHold = 400;       // milliseconds that a still finger takes to scrub
    static constexpr int kDoubleTap = 300;  // milliseconds between the two at most
    static constexpr double kSlop = 10;     // points that a still finger may roll

    /// Not owned.
    explicit WaveGestures(WaveGesturesDelegate& delegate) : m_delegate(delegate) {}

    void setMayScroll(bool may) { m_mayScroll = may; }
    void setMayScrub(bool may) { m_mayScrub = may; }

    /// @param time  milliseconds of the events' own clock
    void pressed(int finger, QPointF at, quint64 time);
    void moved(int finger, QPointF to, quint64 time);
    void released(int finger, quint64 time);
    /// A finger has rested for `kHold` since it was pressed.
    void held();
    /// All fingers are taken away, and a fling ends.
    void cancel();

    /// Whether a hold is to be told.
    bool awaitsHold() const { return m_doing == Doing::nothingYet && m_mayScrub; }
    bool scrubbing() const { return m_doing == Doing::scrubbing; }
    Fling& fling() { return m_fling; }

  private:
    enum class Doing { resting, nothingYet, scrolling, pinching, scrubbing, ignoring };
    struct Finger {
        int id;
        QPointF began;
        QPointF at;
    };
    using Fingers = std::vector<Finger>;

    Fingers::iterator find(int id);
    void beginPinch();
    void scroll(const Finger& finger, QPointF before, quint64 time);
    void pinch(QPointF middleBefore, double distanceBefore);
    void tap(QPointF at, quint64 time);
    QPointF middle() const { return (m_fingers[0].at + m_fingers[1].at) / 2; }
    double distance() const;

    WaveGesturesDelegate& m_delegate;
    Fingers m_fingers;  // in the order in which they came
    Doing m_doing = Doing::resting;
    Fling m_fling;
    bool m_mayScroll = true;
    bool m_mayScrub = true;
    bool m_caught = false;  // the finger stopped a fling: no tap
    bool m_second = false;  // the finger came soon after a tap, there
    bool m_tapped = false;
    quint64 m_pressTime = 0;
    quint64 m_tapTime = 0;
    QPointF m_tapAt;
};
