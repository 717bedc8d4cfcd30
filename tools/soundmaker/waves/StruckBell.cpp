#include "Modes.h"
#include "Waves.h"

/// A church bell in its own minor third: hum, prime, tierce, quint, nominal and those above, each a
/// beating pair. Partials of Thomas D. Rossing and Robert Perrin, "Vibrations of bells", 1987.
Sound struckBell() {
    struct Partial {
        double ratio, amplitude, fadeSeconds, beatsPerSecond;
    };
    constexpr Partial kPartials[] = {
        {0.5, 0.5, 24, 0.31},  {1, 1, 18, 0.47},       {1.2, 0.62, 15, 0.38},
        {1.5, 0.3, 11, 0.6},   {2, 0.75, 11, 0.85},    {2.5, 0.26, 7, 1.1},
        {2.662, 0.2, 6, 0.9},  {3.011, 0.34, 6, 1.3},  {4.166, 0.24, 5, 1.7},
        {5.433, 0.15, 3.5, 2}, {6.796, 0.1, 1.8, 2.3}, {8.215, 0.07, 1.2, 3.1},
    };
    Sound sound(framesIn(7));
    for (const Partial& p : kPartials)
        addBeatingMode(sound, {p.ratio * kPitch, p.amplitude, p.fadeSeconds}, p.beatsPerSecond);
    return sound;
}
