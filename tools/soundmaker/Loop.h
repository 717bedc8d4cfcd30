#pragma once

#include <array>
#include <cmath>
#include <numbers>

#include "Random.h"
#include "Sound.h"

/// The frequency nearest to `hertz` that does a whole number of cycles in a loop.
inline double fitting(double hertz, double loopSeconds) {
    return std::round(hertz * loopSeconds) / loopSeconds;
}

/// A smooth random curve that ends where it began and is 0 on average: sines of one to six cycles a
/// loop, the slower the stronger. Mostly in [-1, 1].
class Wander {
  public:
    explicit Wander(Random& random) {
        for (double& phase : m_phases)
            phase = random.between(0, 2 * std::numbers::pi);
    }
    /// @param position  in the loop, [0, 1)
    double at(double position) const {
        double sum = 0;
        for (std::size_t i = 0; i < m_phases.size(); ++i) {
            const double cycles = double(i + 1);
            sum += std::sin(2 * std::numbers::pi * cycles * position + m_phases[i]) / cycles;
        }
        return sum * 0.7;
    }

  private:
    std::array<double, 6> m_phases{};
};

/// One turn of `step(frame)`, frames 0 to count - 1, after a turn that lets delays and filters
/// settle: when what drives them repeats, so does the result, and its end joins its start.
template <class Step>
Sound settled(std::size_t count, Step step) {
    Sound sound(count);
    for (int turn = 0; turn < 2; ++turn) {
        for (std::size_t i = 0; i < count; ++i)
            sound[i] = step(i);
    }
    return sound;
}

/// Noise to drive a loop with.
inline Sound noise(std::size_t count, std::uint64_t seed) {
    Random random(seed);
    Sound sound(count);
    for (double& sample : sound)
        sample = random.white();
    return sound;
}
