#include <cmath>
#include <numbers>

#include "Harmonics.h"
#include "Loop.h"
#include "Resonator.h"
#include "TunedLoop.h"
#include "Waves.h"

/// Breath blown across an open pipe, half tone and half air: noise and a weak jet drive a tuned
/// delay loop, the tube. After Perry R. Cook, "A meta-wind-instrument physical model", 1992, with a
/// jet that does not feed back.
Sound breathPipe() {
    constexpr double kSeconds = 6;
    constexpr double kJet[] = {1, 0.5, 0.3, 0.2, 0.1, 0.06};
    const Sound air = noise(framesIn(kSeconds), 1992);
    TunedLoop tube(kPitch, 0.3, 0.35);
    Resonator lips(1500, 2200), hiss(4200, 3000);
    Random random(5);
    const Wander breath(random), jet(random);
    return settled(air.size(), [&](std::size_t i) {
        const double position = double(i) / double(air.size());
        const double pressure = 1 + 0.35 * breath.at(position);
        const double blown = lips.process(air[i]) * pressure;
        const double angle = 2 * std::numbers::pi * kPitch * kSeconds * position;
        const double driven = blown + 0.035 * (1 + 0.5 * jet.at(position)) * harmonics(kJet, angle);
        return tube.process(driven) + 0.3 * pressure * hiss.process(air[i]);
    });
}
