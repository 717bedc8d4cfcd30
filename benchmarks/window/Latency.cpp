#include <QElapsedTimer>
#include <stdexcept>

#include "Figures.h"
#include "InstrumentWindow.h"
#include "LatencyProbe.h"
#include "Measurements.h"

namespace {

/// When a key was last passed on to the voices.
class Listener : public NotesDelegate {
  public:
    explicit Listener(Notes& notes) : m_notes(notes) {
        m_clock.start();
        notes.addDelegate(*this);
    }
    ~Listener() override { m_notes.removeDelegate(*this); }
    void keyTouched(bool) override { m_last = m_clock.nsecsElapsed(); }
    qint64 now() const { return m_clock.nsecsElapsed(); }
    qint64 last() const { return m_last; }

  private:
    Notes& m_notes;
    QElapsedTimer m_clock;
    qint64 m_last = 0;
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
    const Listener listener(instrument.controller().instrument().notes());
    QQuickItem& keyboard = instrument.item("keyboard");
    std::vector<double> milliseconds;
    for (int i = 0; i < 1000; ++i) {
        const qint64 before = listener.now();
        instrument.fingers().press(0, instrument.placeOf(keyboard, 0.1 + 0.0008 * i, 0.85));
        if (listener.last() < before)
            throw std::runtime_error("a key was not heard");
        milliseconds.push_back(double(listener.last() - before) * 1e-6);
        live(0.003);
        instrument.fingers().release(0);
        live(0.003);
    }
    tellFigures("touch delivered to trigger", milliseconds, "ms", "2");
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
