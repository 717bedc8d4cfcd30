#include <array>
#include <cmath>
#include <numbers>

#include "Harmonics.h"
#include "Loop.h"
#include "Resonator.h"
#include "Waves.h"

namespace {

constexpr double kSeconds = 7;
constexpr int kPlayers = 8;
constexpr std::size_t kHarmonics = 34;

/// Harmonics of the corner that runs round a bowed string, as the bridge feels them.
std::array<double, kHarmonics> helmholtzMotion() {
    std::array<double, kHarmonics> amplitudes{};
    for (std::size_t k = 0; k < kHarmonics; ++k)
        amplitudes[k] = std::exp(-double(k) / 22) / double(k + 1);  // a corner, slightly rounded
    return amplitudes;
}

void addPlayer(Sound& sound, Random& random) {
    const auto amplitudes = helmholtzMotion();
    const Wander pitch(random), level(random), pressure(random);
    const double vibrato = fitting(random.between(4.6, 6), kSeconds) * kSeconds;
    const double start = random.uniform();
    double phase = random.between(0, 2 * std::numbers::pi);
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double position = double(i) / double(sound.size());
        const double shake = 0.0045 * std::sin(2 * std::numbers::pi * (vibrato * position + start));
        const double hertz = kPitch * (1 + 0.0035 * pitch.at(position) + shake);
        phase += 2 * std::numbers::pi * hertz / kFramesPerSecond;
        const double bow = 1 + 0.45 * level.at(position);
        const double grit = 0.07 * (1 + 0.6 * pressure.at(position)) * random.white();
        sound[i] += bow * (harmonics(amplitudes, phase) + grit);
    }
}

/// Air and plates of the body, and the hill that the bridge makes.
Sound throughBody(const Sound& strings) {
    Resonator air(280, 60), lowPlate(470, 70), highPlate(560, 90), plates(1150, 500),
        hill(2500, 1100);
    return settled(strings.size(), [&](std::size_t i) {
        const double x = strings[i];
        return 0.14 * x + 0.6 * air.process(x) + 0.9 * lowPlate.process(x) +
               0.5 * highPlate.process(x) + 0.7 * plates.process(x) + 0.95 * hill.process(x);
    });
}

}  // namespace

/// Eight violins in unison: Helmholtz's bowed string ("Die Lehre von den Tonempfindungen", 1863;
/// Lothar Cremer, "The Physics of the Violin", 1984) in a body with the resonances of Erik V.
/// Jansson, "Acoustics for Violin and Guitar Makers", 2002.
Sound bowedStrings() {
    Random random(1863);
    Sound strings(framesIn(kSeconds));
    for (int player = 0; player < kPlayers; ++player)
        addPlayer(strings, random);
    return throughBody(strings);
}
