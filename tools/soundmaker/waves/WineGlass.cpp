#include <cmath>
#include <numbers>

#include "Harmonics.h"
#include "Loop.h"
#include "Resonator.h"
#include "Waves.h"

namespace {

/// Of the mode with n waves around the rim, for a glass twice as high as it is wide.
double glassMode(int n) {
    const double n2 = n * n;
    const double height = std::pow(1.875 / 2, 4);
    return std::sqrt(((n2 - 1) * (n2 - 1) + height) / (1 + 1 / n2));
}

}  // namespace

/// A wet finger going round the rim of a wine glass twice in six seconds: the mode's four nodes go
/// with it, so the tone comes and goes eight times. Modes of A. P. French, "In vino veritas: a
/// study of wineglass acoustics", 1983.
Sound wineGlass() {
    constexpr double kSeconds = 6;
    constexpr double kPasses = 8;  // of a node in front of the ear
    constexpr double kStickSlip[] = {1, 0.3, 0.16, 0.07, 0.05, 0.025};
    const Sound friction = noise(framesIn(kSeconds), 1983);
    Resonator modes[3];
    for (int i = 0; i < 3; ++i)
        modes[i].set(kPitch * glassMode(i + 2) / glassMode(2), 3 + 5 * i);
    Resonator skin(5200, 2500);
    Random random(7);
    const Wander pressure(random);
    return settled(friction.size(), [&](std::size_t i) {
        const double position = double(i) / double(friction.size());
        const double turn = 2 * std::numbers::pi * position;
        const double node = 0.66 + 0.34 * std::cos(kPasses * turn);
        const double rub = friction[i] * (1 + 0.4 * pressure.at(position));
        const double ring =
            5 * modes[0].process(rub) + 3 * modes[1].process(rub) + 2 * modes[2].process(rub);
        const double tone = harmonics(kStickSlip, kPitch * kSeconds * turn);
        return node * (tone * (1 + 0.25 * pressure.at(position)) + 2 * ring) +
               0.06 * skin.process(rub);
    });
}
