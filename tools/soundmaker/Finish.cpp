#include "Finish.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace {

constexpr double kPeak = 0.89;  // -1 dB

void normalise(Sound& sound) {
    double peak = 0;
    for (const double sample : sound)
        peak = std::max(peak, std::abs(sample));
    for (double& sample : sound)
        sample *= kPeak / peak;
}

/// From 0 at the first frame to 1 after `frames`.
double rise(std::size_t frame, std::size_t frames) {
    if (frame >= frames)
        return 1;
    return 0.5 - 0.5 * std::cos(std::numbers::pi * double(frame) / double(frames));
}

/// 1 ms in, so that a stroke stays a stroke; a sixth of the length out.
Sound fades(std::size_t count) {
    Sound window(count);
    for (std::size_t i = 0; i < count; ++i)
        window[i] = rise(i, framesIn(0.001)) * rise(count - 1 - i, count / 6);
    return window;
}

/// Where four frames around an upward crossing of 0 are smallest beside the 50 ms that follow, so
/// that a note neither clicks nor begins in a gap.
std::ptrdiff_t calmestCrossing(const Sound& sound) {
    const std::size_t around = framesIn(0.05);
    std::size_t best = 1;
    double calmest = HUGE_VAL, energy = 0;
    for (std::size_t i = sound.size() - 1; i > 1; --i) {
        energy += sound[i] * sound[i];
        if (i + around < sound.size())
            energy -= sound[i + around] * sound[i + around];
        if (i + around >= sound.size() || sound[i - 1] > 0 || sound[i] <= 0)
            continue;
        const double largest =
            std::max({-sound[i - 1], sound[i], std::abs(sound[i - 2]), std::abs(sound[i + 1])});
        if (largest * largest < calmest * energy) {
            calmest = largest * largest / energy;
            best = i - 1;
        }
    }
    return std::ptrdiff_t(best);
}

}  // namespace

void finishStruck(Sound& sound) {
    const Sound window = fades(sound.size());
    for (std::size_t i = 0; i < sound.size(); ++i)
        sound[i] *= window[i];
    // In the shape of the fades, so that both ends stay at 0.
    const double mean = std::accumulate(sound.begin(), sound.end(), 0.) /
                        std::accumulate(window.begin(), window.end(), 0.);
    for (std::size_t i = 0; i < sound.size(); ++i)
        sound[i] -= mean * window[i];
    normalise(sound);
}

void finishLoop(Sound& sound) {
    const double mean = std::accumulate(sound.begin(), sound.end(), 0.) / double(sound.size());
    for (double& sample : sound)
        sample -= mean;
    std::rotate(sound.begin(), sound.begin() + calmestCrossing(sound), sound.end());
    normalise(sound);
}
