#include "Random.h"
#include "TunedLoop.h"
#include "Waves.h"

/// A steel string plucked a fifth of its length from the bridge: a burst of noise in a tuned delay
/// loop. Karplus and Strong, "Digital synthesis of plucked-string and drum timbres", 1983, tuned as
/// Jaffe and Smith did in the same year.
Sound pluckedString() {
    constexpr double kDullness = 0.12;  // the highs sing for a second
    constexpr double kPluckedAt = 0.2;  // every fifth harmonic is missing
    Random random(1983);
    const std::size_t period = framesIn(1 / kPitch);
    Sound burst(period);
    double soft = 0, mean = 0;
    for (double& sample : burst) {
        soft += 0.6 * (random.white() - soft);  // a finger, not a needle
        sample = soft;
        mean += soft / double(period);
    }
    const auto apart = std::size_t(double(period) * kPluckedAt);
    TunedLoop string(kPitch, kDullness, 12);
    Sound sound(framesIn(5));
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double direct = i < period ? burst[i] - mean : 0;
        const double reflected = i >= apart && i < period + apart ? burst[i - apart] - mean : 0;
        sound[i] = string.process(direct - reflected);
    }
    return sound;
}
