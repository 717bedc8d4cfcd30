#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "SoundMeasures.h"

namespace {

constexpr double kRate = 44100;
constexpr double kOffset = -0.691;  // so that a full-scale 997 Hz sine on one channel is -3.01 LUFS
constexpr double kAbsoluteGate = -70;
constexpr double kRelativeGate = -10;
constexpr std::size_t kStep = 4410;  // frames: a quarter of a block

/// A section of the filter, from the analogue values that Brecht De Man, "Evaluation of
/// implementations of the EBU R128 loudness measurement", 2018, found behind the recommendation's
/// table for 48 kHz.
struct Section {
    double b0, b1, b2, a1, a2;
    double x1 = 0, x2 = 0, y1 = 0, y2 = 0;

    double process(double x) {
        const double y = b0 * x + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2;
        x2 = x1;
        x1 = x;
        y2 = y1;
        y1 = y;
        return y;
    }
};

Section head() {
    const double k = std::tan(std::numbers::pi * 1681.974450955533 / kRate);
    const double q = 0.7071752369554196;
    const double high = std::pow(10, 3.999843853973347 / 20);
    const double band = std::pow(high, 0.4996667741545416);
    const double a0 = 1 + k / q + k * k;
    return {(high + band * k / q + k * k) / a0, 2 * (k * k - high) / a0,
            (high - band * k / q + k * k) / a0, 2 * (k * k - 1) / a0, (1 - k / q + k * k) / a0};
}

Section lowCut() {
    const double k = std::tan(std::numbers::pi * 38.13547087602444 / kRate);
    const double q = 0.5003270373238773;
    const double a0 = 1 + k / q + k * k;
    return {1, -2, 1, 2 * (k * k - 1) / a0, (1 - k / q + k * k) / a0};
}

double loudnessOf(double power) {
    return kOffset + 10 * std::log10(power + 1e-30);
}

/// Mean power of each block.
std::vector<double> blockPowers(std::span<const float> sound) {
    Section first = head(), second = lowCut();
    std::vector<double> steps, blocks;
    double sum = 0;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double y = second.process(first.process(double(sound[i])));
        sum += y * y;
        if ((i + 1) % kStep == 0) {
            steps.push_back(sum / kStep);
            sum = 0;
        }
    }
    for (std::size_t i = 3; i < steps.size(); ++i)
        blocks.push_back((steps[i] + steps[i - 1] + steps[i - 2] + steps[i - 3]) / 4);
    return blocks;
}

double meanAbove(std::span<const double> powers, double gate) {
    double sum = 0;
    std::size_t count = 0;
    for (const double power : powers) {
        if (loudnessOf(power) > gate) {
            sum += power;
            ++count;
        }
    }
    return count == 0 ? 0 : sum / double(count);
}

}  // namespace

double integratedLoudness(std::span<const float> sound) {
    const auto powers = blockPowers(sound);
    const double gate = loudnessOf(meanAbove(powers, kAbsoluteGate)) + kRelativeGate;
    return loudnessOf(meanAbove(powers, std::max(gate, kAbsoluteGate)));
}
