#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <cmath>
#include <cstdio>

#include "Figures.h"
#include "FrameTimes.h"
#include "InstrumentWindow.h"
#include "Measurements.h"
#include "ScratchFolder.h"
#include "SoundFiles.h"
#include "wave/WaveView2.h"

namespace {

constexpr std::size_t kFrames = 20 * 60 * 44100;
constexpr double kSampleMegabytes = double(kFrames) * 4 / (1 << 20);
constexpr int kTouchMilliseconds = 8;

/// Swelling tones, so that every zoom has something to show.
std::string makeSound(const ScratchFolder& folder) {
    std::vector<std::int16_t> frames(kFrames);
    for (std::size_t i = 0; i < kFrames; ++i) {
        const double seconds = double(i) / 44100;
        const double swell = 0.55 + 0.45 * std::sin(seconds / 7);
        frames[i] = std::int16_t(30000 * swell * std::sin(seconds * 2000));
    }
    const std::string path = folder.file("twenty minutes.wav");
    SoundFiles::write(path, SoundFiles::wav({}, SoundFiles::bytes(frames)));
    return path;
}

/// Milliseconds until it becomes true; looks each millisecond.
template <typename Truth>
double millisecondsUntil(const Truth& truth) {
    QElapsedTimer clock;
    clock.start();
    QEventLoop loop;
    QTimer looks;
    looks.setTimerType(Qt::PreciseTimer);
    QObject::connect(&looks, &QTimer::timeout, &loop, [&] {
        if (truth())
            loop.quit();
    });
    looks.start(1);
    loop.exec();
    return double(clock.nsecsElapsed()) * 1e-6;
}

double untilComplete(const WaveView2& view) {
    return millisecondsUntil([&] { return view.tiles().complete(); });
}

void tellFirstOutline(InstrumentWindow& instrument, const WaveView2& view,
                      const std::string& path) {
    bool arrived = false;
    QObject::connect(instrument.controller().wave(), &WaveState::waveChanged, &view,
                     [&] { arrived = true; });
    instrument.controller().openFiles({QString::fromStdString(path)});
    const double loading = millisecondsUntil([&] { return arrived; });
    tellFigures("from a loaded sound to its outline", {untilComplete(view)}, "ms", "150");
    std::printf("%-44s %.0f ms\n", "loading it", loading);
}

/// From the whole to single samples and back.
void tellZoomSteps(WaveView2& view) {
    std::vector<double> times;
    for (const double factor : {2.0, 0.5}) {
        for (int step = 0; step < 21; ++step) {
            view.zoomBy(factor);
            live(0.001);
            times.push_back(1 + untilComplete(view));
            live(0.1);
        }
    }
    tellFigures("from a zoom step to its outline", times, "ms", "50");
}

/// Two fingers open and close and wander, once in three seconds.
void moveFingers(InstrumentWindow& instrument, const WaveView2& view, double time) {
    const QRectF place = view.mapRectToScene(view.boundingRect());
    const double gap = 0.2 + 0.17 * std::sin(2 * time);
    const double middle = 0.5 + 0.1 * std::sin(1.3 * time);
    const auto at = [&](double across) {
        return (place.topLeft() + QPointF(place.width() * across, place.height() / 2)).toPoint();
    };
    instrument.fingers().move({{1, at(middle - gap)}, {2, at(middle + gap)}});
}

void tellFrames(InstrumentWindow& instrument, const WaveView2& view) {
    constexpr double kSeconds = 10;
    for (int key = 30; key < 42; ++key)
        instrument.controller().tinkleIvory(key);
    const QPoint middle = instrument.placeOf(instrument.item("waveView"));
    instrument.fingers().press(1, middle - QPoint(100, 0));
    instrument.fingers().press(2, middle + QPoint(100, 0));
    QElapsedTimer clock;
    clock.start();
    QTimer touches;
    touches.setTimerType(Qt::PreciseTimer);
    QObject::connect(&touches, &QTimer::timeout, &touches,
                     [&] { moveFingers(instrument, view, double(clock.elapsed()) / 1000); });
    touches.start(kTouchMilliseconds);
    live(1);
    int moves = 0;
    const auto counter =
        QObject::connect(&view, &WaveView2::viewChanged, &view, [&moves] { ++moves; });
    const FrameTimes times(instrument.window());
    const double before = threadSeconds();
    live(kSeconds);
    const double used = threadSeconds() - before;
    touches.stop();
    instrument.fingers().release(1);
    instrument.fingers().release(2);
    tellFigures("between two frames while zooming", times.between(), "ms", "20 (99th)");
    QObject::disconnect(counter);
    std::printf(
        "%-44s %.1f a second, the stretch moved %d times; main thread %.0f %% of one core\n",
        "frames", double(times.count()) / kSeconds, moves, used * 100 / kSeconds);
    instrument.controller().silence();
}

}  // namespace

void measureWaves() {
    const ScratchFolder folder;
    const std::string path = makeSound(folder);
    InstrumentWindow instrument;
    auto& view = dynamic_cast<WaveView2&>(instrument.item("waveView"));
    live(1);
    const double before = memory("Rss");
    tellFirstOutline(instrument, view, path);
    live(1);
    tellZoomSteps(view);
    tellFrames(instrument, view);
    live(1);
    std::printf("%-44s %.1f MiB (at most 20 with the rest)\n", "memory beyond the samples",
                memory("Rss") - before - kSampleMegabytes);
}
