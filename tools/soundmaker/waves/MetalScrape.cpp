#include <cmath>
#include <vector>

#include "Loop.h"
#include "Resonator.h"
#include "Waves.h"

namespace {

constexpr double kSeconds = 5;

/// Bending modes of a plate held at its edges, 1.4 times as long as wide.
std::vector<Resonator> plateModes() {
    constexpr double kLowest = 130, kHighest = 9000;  // hertz
    constexpr double kSides = 1.4 * 1.4;
    std::vector<Resonator> modes;
    for (int m = 1; m < 12; ++m) {
        for (int n = 1; n < 12; ++n) {
            const double hertz = kLowest * (m * m / kSides + n * n) / (1 / kSides + 1);
            if (hertz < kHighest)
                modes.emplace_back(hertz, 2 + hertz * 0.0012);
        }
    }
    return modes;
}

/// What the edge feels on its way over the grooves: faster means denser and louder.
Sound grooves(std::size_t count) {
    Random random(2001);
    const Wander speed(random), depth(random);
    Sound force(count);
    double travelled = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double position = double(i) / double(count);
        const double pace = 1 + 0.4 * speed.at(position);
        travelled += 190 * pace * (0.6 + 0.8 * random.uniform()) / kFramesPerSecond;
        const double rough = 0.05 * random.white();
        const double groove = travelled >= 1 ? random.between(0.4, 1) : 0;
        travelled -= std::floor(travelled);
        force[i] = pace * (1 + 0.4 * depth.at(position)) * (rough + groove);
    }
    return force;
}

}  // namespace

/// An edge drawn over a grooved sheet of steel: rough contact drives the plate's modes. Kees van
/// den Doel, Paul G. Kry and Dinesh K. Pai, "FoleyAutomatic: physically-based sound effects for
/// interactive simulation and animation", 2001.
Sound metalScrape() {
    const Sound force = grooves(framesIn(kSeconds));
    std::vector<Resonator> modes = plateModes();
    return settled(force.size(), [&](std::size_t i) {
        double sum = 0;
        for (std::size_t m = 0; m < modes.size(); ++m)
            sum += (m % 2 == 0 ? 1 : -1) * modes[m].process(force[i]);
        return sum + 0.02 * force[i];
    });
}
