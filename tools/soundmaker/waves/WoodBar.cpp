#include "Modes.h"
#include "Waves.h"

/// A bar of hard wood on soft cords, struck off its middle: the bending modes of a free bar,
/// 1, 2.756, 5.404 ... (Lord Rayleigh, "The Theory of Sound", 1877), the higher the sooner gone
/// (Antoine Chaigne and Vincent Doutaut, "Numerical simulations of xylophones", 1997).
Sound woodBar() {
    constexpr double kRoots[] = {4.7300, 7.8532, 10.9956, 14.1372, 17.2788, 20.4204};
    constexpr double kAmplitudes[] = {1, 0.55, 0.42, 0.24, 0.16, 0.1};
    Sound sound(framesIn(1.6));
    for (int mode = 0; mode < 6; ++mode) {
        const double ratio = kRoots[mode] * kRoots[mode] / (kRoots[0] * kRoots[0]);
        const double fadeSeconds = 3.2 / (1 + 0.9 * (ratio - 1));
        addMode(sound, {kPitch * ratio, kAmplitudes[mode], fadeSeconds});
    }
    // It twists as well, and the resonator below it answers an octave down for a moment.
    addMode(sound, {kPitch * 1.88, 0.2, 0.4});
    addMode(sound, {kPitch / 2, 0.16, 0.5});
    return sound;
}
