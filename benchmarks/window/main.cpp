#include <QElapsedTimer>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "Figures.h"
#include "InstrumentWindow.h"
#include "JackServer.h"
#include "LatencyProbe.h"
#include "WindowSession.h"
#include "audiounits/devices/AudioDevices.h"

// What the instrument's window costs. Each measurement runs in a process of its own:
//
//   window_benchmark touch | latency PERIOD | frames | idle | memory | growth
//
// QT_QUICK_BACKEND=software chooses the software renderer, else it is GL.

namespace {

constexpr QSize kSize{1280, 800};

/// When a key was last passed on to the voices.
class Listener : public NotesDelegate {
  public:
    explicit Listener(Notes& notes) : m_notes(notes) { notes.addDelegate(*this); }
    ~Listener() override { m_notes.removeDelegate(*this); }
    void keyTouched(bool) override { m_last = m_clock.nsecsElapsed(); }
    qint64 now() const { return m_clock.nsecsElapsed(); }
    qint64 last() const { return m_last; }

  private:
    Notes& m_notes;
    QElapsedTimer m_clock = [] {
        QElapsedTimer clock;
        clock.start();
        return clock;
    }();
    qint64 m_last = 0;
};

void measureTouch() {
    InstrumentWindow instrument(kSize);
    const Listener listener(instrument.controller().instrument().notes());
    QQuickItem& keyboard = instrument.item("keyboard");
    std::vector<double> milliseconds;
    for (int i = 0; i < 1000; ++i) {
        const qint64 before = listener.now();
        instrument.fingers().press(0, instrument.placeOf(keyboard, 0.1 + 0.0008 * i, 0.85));
        milliseconds.push_back(double(listener.last() - before) * 1e-6);
        instrument.pass(0.003);
        instrument.fingers().release(0);
        instrument.pass(0.003);
    }
    tellFigures("touch delivered to trigger", milliseconds, "ms", "2");
}

void measureLatency(int period) {
    InstrumentWindow instrument(kSize);
    instrument.pass(1);
    LatencyProbe probe("Ombrix Synth:out_1");
    std::vector<double> milliseconds;
    for (int i = 0; i < 200; ++i) {
        instrument.comesTo([&] { return probe.silent(); }, 10);
        probe.listen();
        const jack_nframes_t pressed = probe.now();
        instrument.fingers().press(0, instrument.placeOf(instrument.item("keyboard"), 0.5, 0.85));
        instrument.comesTo([&] { return probe.heard().has_value(); }, 2);
        instrument.fingers().release(0);
        if (const auto heard = probe.heard())
            milliseconds.push_back(double(std::int32_t(*heard - pressed)) * 1000 / probe.rate());
        instrument.pass(0.05 + 0.001 * (i % 13));  // anywhere in a period
    }
    const double allowed = 2 * period * 1000 / probe.rate() + 5;
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", allowed);
    tellFigures("key to changed frame, period " + std::to_string(period), milliseconds, "ms", text);
}

/// Ten fingers slide over the keys, and every dial turns, so that all lamps move.
void play(InstrumentWindow& instrument, double seconds) {
    QElapsedTimer clock;
    clock.start();
    QQuickItem& keyboard = instrument.item("keyboard");
    const auto placeOfFinger = [&](int finger, double time) {
        const double across = 0.05 + 0.09 * finger + 0.04 * std::sin(2 * time + finger);
        return instrument.placeOf(keyboard, across, finger % 2 ? 0.85 : 0.4);
    };
    for (int finger = 0; finger < 10; ++finger)
        instrument.fingers().press(finger, placeOfFinger(finger, 0));
    for (double time = 0; time < seconds; time = double(clock.elapsed()) / 1000) {
        std::map<int, QPoint> places;
        for (int finger = 0; finger < 10; ++finger)
            places[finger] = placeOfFinger(finger, time);
        instrument.fingers().move(places);
        for (const Parameter& row : kParameters) {
            if (row.dialName.empty())
                continue;
            const double part = 0.5 + 0.5 * std::sin(3 * time + double(row.id));
            instrument.controller().dials()->dial(row.id).tweak(
                float(row.dial.low + part * (row.dial.high - row.dial.low)));
        }
        instrument.pass(0.008);
    }
    for (int finger = 0; finger < 10; ++finger)
        instrument.fingers().release(finger);
}

void measureFrames() {
    InstrumentWindow instrument(kSize);
    play(instrument, 1);
    std::vector<double> milliseconds;
    QElapsedTimer clock;
    clock.start();
    qint64 last = 0;
    const auto counter = QObject::connect(
        &instrument.window(), &QQuickWindow::frameSwapped, &instrument.window(),
        [&] {
            const qint64 now = clock.nsecsElapsed();
            if (last)
                milliseconds.push_back(double(now - last) * 1e-6);
            last = now;
        },
        Qt::DirectConnection);
    const double before = threadSeconds();
    play(instrument, 10);
    const double used = threadSeconds() - before;
    QObject::disconnect(counter);
    tellFigures("between two frames", milliseconds, "ms", "20 (99th)");
    std::printf("%-44s %.1f a second; main thread %.0f %% of one core (at most 60)\n", "frames",
                double(milliseconds.size()) / 10, used * 10);
}

void measureIdle() {
    InstrumentWindow instrument(kSize);
    instrument.pass(5);
    int frames = 0;
    QObject::connect(
        &instrument.window(), &QQuickWindow::frameSwapped, &instrument.window(), [&] { ++frames; },
        Qt::DirectConnection);
    const double before = threadSeconds();
    const double all = processSeconds();
    instrument.pass(20);
    std::printf(
        "%-44s main thread %.2f %%, with audio %.2f %% of a core, %d frames (at most 1 %%, none)\n",
        "20 s of an idle window", (threadSeconds() - before) * 5, (processSeconds() - all) * 5,
        frames);
}

void measureMemory() {
    InstrumentWindow instrument(kSize);
    play(instrument, 2);
    instrument.pass(3);
    std::printf(
        "%-44s resident %.0f, proportional %.0f MiB (at most 120 with software, 200 with GL)\n",
        "memory", memory("Rss"), memory("Pss"));
}

void measureGrowth() {
    InstrumentWindow instrument(kSize);
    const auto press = [&](int times) {
        QQuickItem& keyboard = instrument.item("keyboard");
        for (int i = 0; i < times; ++i) {
            instrument.fingers().press(
                0, instrument.placeOf(keyboard, 0.05 + 0.009 * (i % 100), 0.85));
            instrument.fingers().release(0);
            if (i % 20 == 0)
                instrument.pass(0.001);
        }
    };
    const auto change = [&](int times) {
        for (int i = 0; i < times; ++i) {
            instrument.controller().presetBar()->next();
            instrument.comesTo([&] { return !instrument.controller().wave()->loading(); });
        }
    };
    change(1000);
    press(10000);
    instrument.pass(2);
    const double before = memory("Rss");
    change(10000);
    press(100000);
    instrument.pass(2);
    std::printf("%-44s %.1f MiB to %.1f MiB resident\n",
                "10,000 preset changes, 100,000 key presses", before, memory("Rss"));
}

}  // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "";
    const int period = argc > 2 ? std::atoi(argv[2]) : 256;
    JackServer server;
    server.start(44100, period);
    const WindowSession session(1920, 1200);
    std::string error;
    AudioDevices::choose("jack", error);
    if (what == "touch")
        measureTouch();
    else if (what == "latency")
        measureLatency(period);
    else if (what == "frames")
        measureFrames();
    else if (what == "idle")
        measureIdle();
    else if (what == "memory")
        measureMemory();
    else if (what == "growth")
        measureGrowth();
    else
        return std::puts(
                   "window_benchmark touch | latency PERIOD | frames | idle | memory | growth"),
               2;
    return 0;
}
