#include <cstdio>

#include "Figures.h"
#include "InstrumentWindow.h"
#include "Measurements.h"

namespace {

void pressKeys(InstrumentWindow& instrument, int times) {
    QQuickItem& keyboard = instrument.item("keyboard");
    for (int i = 0; i < times; ++i) {
        instrument.fingers().press(0, instrument.placeOf(keyboard, 0.05 + 0.009 * (i % 100), 0.85));
        instrument.fingers().release(0);
        if (i % 20 == 0)
            live(0.001);
    }
}

void changePresets(InstrumentWindow& instrument, int times) {
    const WaveState& wave = *instrument.controller().wave();
    for (int i = 0; i < times; ++i) {
        const auto before = wave.wave();
        instrument.controller().presetBar()->next();
        // Two presets may share a sound: then it does not change.
        for (int wait = 0; wait < 20 && wave.wave() == before; ++wait)
            live(0.001);
    }
}

}  // namespace

void measureMemory() {
    InstrumentWindow instrument;
    play(instrument, 2);
    live(3);
    std::printf(
        "%-44s resident %.0f without %.0f that the JACK server shares, proportional %.0f MiB "
        "(at most 120 with software, 200 with GL)\n",
        "memory", memory("Rss") - jackMemory(), jackMemory(), memory("Pss"));
}

void measureGrowth(int times) {
    InstrumentWindow instrument;
    const auto use = [&](int count) {
        changePresets(instrument, count);
        pressKeys(instrument, 10 * count);
        live(2);
    };
    use(std::min(times, 1000));  // what is kept is bounded, and full by then
    for (int part = 1; part <= 4; ++part) {
        const double before = memory("Rss");
        use(times / 4);
        std::printf("%-44s %.1f MiB to %.1f MiB resident\n",
                    (std::to_string(times / 4) + " preset changes, ten times the keys").c_str(),
                    before, memory("Rss"));
        std::fflush(stdout);
    }
}
