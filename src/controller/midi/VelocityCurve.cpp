#include "midi/VelocityCurve.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kLightHands = 0.5;  // exponents: mirror images of one another
constexpr double kHeavyHands = 2;

std::uint8_t bent(std::uint8_t velocity, double exponent) {
    return static_cast<std::uint8_t>(
        std::lround(1 + 126 * std::pow((velocity - 1) / 126.0, exponent)));
}

}  // namespace

std::uint8_t curved(VelocityCurve curve, std::uint8_t velocity) {
    const auto struck = std::clamp<std::uint8_t>(velocity, 1, 127);
    switch (curve) {
        case VelocityCurve::soft:
            return bent(struck, kLightHands);
        case VelocityCurve::hard:
            return bent(struck, kHeavyHands);
        case VelocityCurve::fixed:
            return kFixedVelocity;
        default:
            return struck;
    }
}
