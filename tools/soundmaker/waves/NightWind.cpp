#include <algorithm>

#include "Loop.h"
#include "Resonator.h"
#include "Waves.h"

/// Wind around a house at night: a roar, and wires and gaps that whistle in proportion to its
/// speed, 0.2 U / d. Vincenc Strouhal, "Ueber eine besondere Art der Tonerregung", 1878; voiced as
/// in Andy Farnell, "Designing Sound", 2010.
Sound nightWind() {
    constexpr double kSeconds = 8;
    constexpr double kStrouhal = 0.2;
    constexpr double kDiameters[] = {0.005, 0.0031, 0.0016};  // metres
    constexpr double kLevels[] = {1.6, 1.2, 0.6};
    const Sound air = noise(framesIn(kSeconds), 1878);
    Random random(11);
    const Wander wind(random), gusts[] = {Wander(random), Wander(random), Wander(random)};
    Resonator roar, whistles[3];
    return settled(air.size(), [&](std::size_t i) {
        const double position = double(i) / double(air.size());
        const double speed = 11 * (1 + 0.35 * wind.at(position));  // metres a second
        roar.set(30 * speed, 35 * speed);
        double sum = 0.5 * speed / 11 * roar.process(air[i]);
        for (int w = 0; w < 3; ++w) {
            const double here = speed * (1 + 0.12 * gusts[w].at(position));
            const double hertz = kStrouhal * here / kDiameters[w];
            whistles[w].set(hertz, 0.045 * hertz);
            const double strength = std::max(0., here / 11 - 0.35);
            sum += kLevels[w] * strength * strength * whistles[w].process(air[i]);
        }
        return sum;
    });
}
