#include <array>
#include <cmath>
#include <numbers>

#include "Harmonics.h"
#include "Loop.h"
#include "Waves.h"

/// Nine low tones an eighth of a hertz apart: their overtones meet and part one after the other,
/// and a slow tune of harmonics goes by. After Jean-Claude Risset's harmonic arpeggio ("Mutations",
/// 1969).
Sound lowDrone() {
    constexpr double kSeconds = 8;
    constexpr double kHertz = kPitch / 4;
    constexpr int kTones = 9;
    std::array<double, 18> partials{};
    for (std::size_t k = 0; k < partials.size(); ++k)
        partials[k] = std::pow(double(k + 1), -0.85);
    partials[1] *= 0.6;  // a hollow place under the tune
    Random random(1969);
    Sound sound(framesIn(kSeconds));
    for (int tone = 0; tone < kTones; ++tone) {
        const double cycles = kHertz * kSeconds + tone - kTones / 2;
        const double phase = random.between(0, 2 * std::numbers::pi);
        for (std::size_t i = 0; i < sound.size(); ++i) {
            const double position = double(i) / double(sound.size());
            sound[i] += harmonics(partials, 2 * std::numbers::pi * cycles * position + phase);
        }
    }
    return sound;
}
