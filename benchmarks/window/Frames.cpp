#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <cmath>
#include <cstdio>

#include "Figures.h"
#include "FrameTimes.h"
#include "InstrumentWindow.h"
#include "Measurements.h"

namespace {

constexpr int kFingers = 10;
constexpr int kTouchMilliseconds = 8;  // a touch screen tells of its fingers 125 times a second

/// On a keyboard that lies there in the window.
QPoint placeOfFinger(const QRectF& keyboard, int finger, double time) {
    const double across = 0.05 + 0.09 * finger + 0.04 * std::sin(2 * time + finger);
    const double down = finger % 2 ? 0.85 : 0.4;
    return (keyboard.topLeft() + QPointF(keyboard.width() * across, keyboard.height() * down))
        .toPoint();
}

/// Each finger by an event of its own, as an X server tells it.
void slide(Fingers& fingers, const QRectF& keyboard, double time) {
    for (int finger = 0; finger < kFingers; ++finger)
        fingers.move(finger, placeOfFinger(keyboard, finger, time));
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

}  // namespace

void live(double seconds) {
    QEventLoop loop;
    QTimer::singleShot(int(seconds * 1000), Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

void play(InstrumentWindow& instrument, double seconds) {
    const QQuickItem& item = instrument.item("keyboard");
    const QRectF keyboard = item.mapRectToScene(item.boundingRect());
    for (int finger = 0; finger < kFingers; ++finger)
        instrument.fingers().press(finger, placeOfFinger(keyboard, finger, 0));
    QElapsedTimer clock;
    clock.start();
    QTimer touches;
    touches.setTimerType(Qt::PreciseTimer);
    QObject::connect(&touches, &QTimer::timeout, &touches, [&] {
        const double time = double(clock.elapsed()) / 1000;
        slide(instrument.fingers(), keyboard, time);
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
