#include <cmath>
#include <numbers>

#include "Loop.h"
#include "Waves.h"

namespace {

/// One bubble of `radius` metres born at frame `start`; what is left at the end goes on at the
/// beginning. `rise` is how much its pitch rises while it fades.
void addBubble(Sound& sound, std::size_t start, double radius, double rise) {
    const double hertz = 3 / radius;
    const double damping = 0.13 / radius + 0.0072 * std::pow(radius, -1.5);
    const double loudness = std::pow(radius / 0.005, 0.9);
    const auto frames = std::size_t(7 / damping * kFramesPerSecond);
    double phase = 0;
    for (std::size_t i = 0; i < frames; ++i) {
        const double time = double(i) / kFramesPerSecond;
        phase += 2 * std::numbers::pi * hertz * (1 + rise * damping * time) / kFramesPerSecond;
        sound[(start + i) % sound.size()] += loudness * std::exp(-damping * time) * std::sin(phase);
    }
}

}  // namespace

/// A brook: some hundred bubbles a second from 1 to 9 mm, each a fading sine whose pitch rises as
/// the bubble does. Kees van den Doel, "Physically based models for liquid sounds", 2005.
Sound waterBubbles() {
    constexpr double kSeconds = 6;
    constexpr int kBubbles = 800;
    Random random(2005);
    Sound sound(framesIn(kSeconds));
    for (int i = 0; i < kBubbles; ++i) {
        const auto start = std::size_t(random.uniform() * double(sound.size()));
        const double radius = 0.001 * std::pow(9, std::pow(random.uniform(), 1.6));
        const double rise = random.uniform() < 0.6 ? random.between(0.02, 0.1) : 0;
        addBubble(sound, start, radius, rise);
    }
    return sound;
}
