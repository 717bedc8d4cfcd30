#include <QElapsedTimer>
#include <stdexcept>

#include "Figures.h"
#include "InstrumentWindow.h"
#include "LatencyProbe.h"
#include "Measurements.h"

namespace {

/// Measures from a touch's arrival in the window to its being passed on to the voices.
class Stopwatch : public QObject, public NotesDelegate {
  public:
    explicit Stopwatch(InstrumentWindow& instrument)
        : m_notes(instrument.controller().instrument().notes()) {
        m_notes.addDelegate(*this);
        instrument.window().installEventFilter(this);
    }
    ~Stopwatch() override { m_notes.removeDelegate(*this); }
    void keyTouched(bool) override {
        if (m_clock.isValid())
            m_milliseconds.push_back(double(m_clock.nsecsElapsed()) * 1e-6);
        m_clock.invalidate();
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::TouchBegin)
            m_clock.start();
        return false;
    }
    const std::vector<double>& milliseconds() const { return m_milliseconds; }

  private:
    Notes& m_notes;
    QElapsedTimer m_clock;
    std::vector<double> m_milliseconds;
};

/// A short sound that ends when the key is let go.
void makeDry(InstrumentWindow& instrument) {
    DialBank& dials = *instrument.controller().dials();
    for (const auto id :
         {ParameterId::echoFeedback, ParameterId::adsrAttack, ParameterId::adsrRelease})
        dials.dial(id).tweak(dials.dial(id).minValue());
}

}  // namespace

void measureTouch() {
    InstrumentWindow instrument;
    const Stopwatch watch(instrument);
    QQuickItem& keyboard = instrument.item("keyboard");
    for (int i = 0; i < 1000; ++i) {
        instrument.fingers().press(0, instrument.placeOf(keyboard, 0.1 + 0.0008 * i, 0.85));
        live(0.003);
        instrument.fingers().release(0);
        live(0.003);
    }
    tellFigures("touch delivered to trigger", watch.milliseconds(), "ms", "2");
}

void measureLatency(int period) {
    InstrumentWindow instrument;
    makeDry(instrument);
    live(1);
    LatencyProbe probe;
    if (!probe.connect(kInstrumentPort))
        throw std::runtime_error("the instrument is not on JACK");
    const QPoint key = instrument.placeOf(instrument.item("keyboard"), 0.5, 0.85);
    std::vector<double> milliseconds;
    for (int i = 0; i < 200; ++i) {
        if (!instrument.comesTo([&] { return probe.silent(); }, 10))
            throw std::runtime_error("it does not fall silent");
        probe.listen();
        const jack_nframes_t pressed = probe.now();
        instrument.fingers().press(0, key);
        const bool heard = instrument.comesTo([&] { return probe.heard().has_value(); }, 2);
        instrument.fingers().release(0);
        if (!heard)
            throw std::runtime_error("no sound");
        milliseconds.push_back(double(std::int32_t(*probe.heard() - pressed)) * 1000 /
                               probe.rate());
        live(0.05 + 0.001 * (i % 13));  // anywhere in a period
    }
    char allowed[32];
    std::snprintf(allowed, sizeof allowed, "%.1f", 2 * period * 1000 / probe.rate() + 5);
    tellFigures("key to changed frame, period " + std::to_string(period), milliseconds, "ms",
                allowed);
}
