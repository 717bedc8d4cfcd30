#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <cmath>
#include <cstdio>

#include "Figures.h"
#include "InstrumentWindow.h"
#include "Measurements.h"

namespace {

constexpr int kFingers = 10;
constexpr int kTouchMilliseconds = 8;  // a touch screen tells of its fingers 125 times a second

QPoint placeOfFinger(InstrumentWindow& instrument, int finger, double time) {
    const double across = 0.05 + 0.09 * finger + 0.04 * std::sin(2 * time + finger);
    return instrument.placeOf(instrument.item("keyboard"), across, finger % 2 ? 0.85 : 0.4);
}

/// Each finger by an event of its own, as an X server tells it.
void slide(InstrumentWindow& instrument, double time) {
    for (int finger = 0; finger < kFingers; ++finger)
        instrument.fingers().move(finger, placeOfFinger(instrument, finger, time));
}

void turn(InstrumentWindow& instrument, double time) {
    for (const Parameter& row : kParameters) {
        if (row.dialName.empty())
            continue;
        const double part = 0.5 + 0.5 * std::sin(3 * time + double(row.id));
        instrument.controller().dials()->dial(row.id).tweak(
            float(row.dial.low + part * (row.dial.high - row.dial.low)));
    }
}

/// The times between frames, in milliseconds, for as long as it lives.
class FrameTimes {
  public:
    explicit FrameTimes(QQuickWindow& window) {
        m_clock.start();
        m_counter = QObject::connect(
            &window, &QQuickWindow::frameSwapped, &window,
            [this] { m_ends.push_back(double(m_clock.nsecsElapsed()) * 1e-6); },
            Qt::DirectConnection);
    }
    ~FrameTimes() { QObject::disconnect(m_counter); }

    std::size_t count() const { return m_ends.size(); }
    std::vector<double> between() const {
        std::vector<double> times;
        for (std::size_t i = 1; i < m_ends.size(); ++i)
            times.push_back(m_ends[i] - m_ends[i - 1]);
        return times;
    }

  private:
    QElapsedTimer m_clock;
    std::vector<double> m_ends;
    QMetaObject::Connection m_counter;
};

}  // namespace

void live(double seconds) {
    QEventLoop loop;
    QTimer::singleShot(int(seconds * 1000), Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

void play(InstrumentWindow& instrument, double seconds) {
    for (int finger = 0; finger < kFingers; ++finger)
        instrument.fingers().press(finger, placeOfFinger(instrument, finger, 0));
    QElapsedTimer clock;
    clock.start();
    QTimer touches;
    touches.setTimerType(Qt::PreciseTimer);
    QObject::connect(&touches, &QTimer::timeout, &touches, [&] {
        const double time = double(clock.elapsed()) / 1000;
        slide(instrument, time);
        turn(instrument, time);
    });
    touches.start(kTouchMilliseconds);
    live(seconds);
    touches.stop();
    for (int finger = 0; finger < kFingers; ++finger)
        instrument.fingers().release(finger);
}

void measureFrames() {
    constexpr double kSeconds = 10;
    InstrumentWindow instrument;
    play(instrument, 1);
    const FrameTimes times(instrument.window());
    const double before = threadSeconds();
    play(instrument, kSeconds);
    const double used = threadSeconds() - before;
    tellFigures("between two frames", times.between(), "ms", "20 (99th)");
    std::printf("%-44s %.1f a second; main thread %.0f %% of one core (at most 60)\n", "frames",
                double(times.count()) / kSeconds, used * 100 / kSeconds);
}

void measureIdle() {
    constexpr double kSeconds = 20;
    InstrumentWindow instrument;
    live(5);
    const FrameTimes times(instrument.window());
    const double before = threadSeconds();
    const double all = processSeconds();
    live(kSeconds);
    std::printf(
        "%-44s main thread %.2f %%, with audio %.2f %% of a core, %zu frames (at most 1 %%, "
        "none)\n",
        "20 s of an idle window", (threadSeconds() - before) * 100 / kSeconds,
        (processSeconds() - all) * 100 / kSeconds, times.count());
}
