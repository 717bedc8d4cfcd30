#include <cmath>
#include <numbers>

#include "Loop.h"
#include "Waves.h"

namespace {

/// Of the ring mode with n waves around the rim.
double ringMode(int n) {
    const double n2 = n * n;
    return n * (n2 - 1) / std::sqrt(n2 + 1);
}

}  // namespace

/// A metal bowl rubbed around its rim, which swells and beats without end. Its modes are those of a
/// ring, n(n2 - 1) / sqrt(n2 + 1) for n = 2, 3 ... waves around the rim: Lord Rayleigh, "The Theory
/// of Sound", 1877; which of them sing, and their beats, after Denis Terwagne and John W. M. Bush,
/// "Tibetan singing bowls", 2011.
Sound singingBowl() {
    constexpr double kSeconds = 8;
    constexpr double kAmplitudes[] = {1, 0.5, 0.26, 0.11, 0.05};
    constexpr double kBeats[] = {0.5, 0.75, 1.25, 1.75, 2.5};  // a second
    Random random(2011);
    Sound sound(framesIn(kSeconds));
    const auto addSine = [&](double hertz, double amplitude, const Wander& swell) {
        const double phase = random.between(0, 2 * std::numbers::pi);
        for (std::size_t i = 0; i < sound.size(); ++i) {
            const double position = double(i) / double(sound.size());
            const double angle = 2 * std::numbers::pi * hertz * kSeconds * position + phase;
            sound[i] += amplitude * (1 + 0.5 * swell.at(position)) * std::sin(angle);
        }
    };
    for (int mode = 0; mode < 5; ++mode) {
        const double hertz = fitting(kPitch * ringMode(mode + 2) / ringMode(2), kSeconds);
        const Wander swell(random);
        // The rim is never quite round: each mode is a pair.
        addSine(hertz - kBeats[mode] / 2, kAmplitudes[mode] * 0.6, swell);
        addSine(hertz + kBeats[mode] / 2, kAmplitudes[mode] * 0.4, swell);
    }
    // Rubbed hard, the rim moves beyond where it is linear: faint overtones of the lowest mode.
    for (int harmonic = 2; harmonic < 5; ++harmonic)
        addSine(harmonic * kPitch, 0.22 / harmonic, Wander(random));
    return sound;
}
