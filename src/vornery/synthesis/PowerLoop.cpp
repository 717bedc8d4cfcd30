#include "PowerLoop.h"

#include <bit>
#include <cmath>
#include <limits>

#include "WideForms.h"

namespace {

constexpr std::int32_t kSqrtHalf = 0x3f3504f3;  // bits of sqrt(1/2)
constexpr std::int32_t kMagnitude = 0x7fffffff;
constexpr double kLargestPower = 127.49;  // of two that the series can express
constexpr float kSmallest = std::numeric_limits<float>::min();

// log2 of a positive normal number: its power of two, and the series of the inverse hyperbolic
// tangent for the rest, which lies between sqrt(1/2) and sqrt(2). Their sum is a double, so that
// the logarithm of a very small number is as good after the point as that of any other.
inline double log2Of(float x) {
    const auto bits = std::bit_cast<std::int32_t>(x) - kSqrtHalf;
    const std::int32_t power = bits >> 23;
    const float rest = std::bit_cast<float>((bits & 0x007fffff) + kSqrtHalf);
    const float s = (rest - 1.f) / (rest + 1.f);
    const float s2 = s * s;
    // 2 / (ln 2 * 9), 7, 5, 3 and 1
    const float high = (0.32059889f * s2 + 0.41219858f) * (s2 * s2);
    const float low = 0.57707802f * s2 + 0.96179669f;
    return power + double{((high + low) * s2 + 2.88539008f) * s};
}

// 2^z for z from -126 to 127: the nearest whole power, and the exponential series for the rest.
inline float exp2Of(double z) {
    const std::int32_t power = static_cast<std::int32_t>(z + 128.5) - 128;
    const auto f = static_cast<float>(z - power);
    const float f2 = f * f;
    const float first = 6.9314718e-1f * f + 1.f;
    const float second = 5.5504109e-2f * f + 2.4022651e-1f;
    const float third = (1.5403530e-4f * f + 1.3333558e-3f) * f + 9.6181291e-3f;
    const float series = (third * f2 + second) * f2 + first;
    return series * std::bit_cast<float>((power + 127) << 23);
}

bool allFinite(const float* samples, std::int32_t count) {
    std::int32_t wild = 0;
    for (std::int32_t k = 0; k < count; ++k)
        wild |= (std::bit_cast<std::int32_t>(samples[k]) & kMagnitude) >= 0x7f800000 ? 1 : 0;
    return wild == 0;
}

OMBRIX_WIDE_FORMS
void raiseFinite(float* samples, std::int32_t count, float exponent) {
    const float ofNothing = exponent > 0.f ? 0.f : 1.f;
    for (std::int32_t k = 0; k < count; ++k) {
        const float x = samples[k];
        const float magnitude = std::fabs(x);
        const double z = exponent * log2Of(magnitude);
        const float raised =
            magnitude < kSmallest ? ofNothing : exp2Of(z < kLargestPower ? z : kLargestPower);
        samples[k] = x < 0.f ? -raised : raised;
    }
}

void raiseOneByOne(float* samples, std::int32_t count, float exponent) {
    for (std::int32_t k = 0; k < count; ++k) {
        const float x = samples[k];
        samples[k] = x >= 0.f ? std::pow(x, exponent) : -std::pow(-x, exponent);
    }
}

}  // namespace

void raiseToPower(float* samples, std::uint32_t frames, float exponent) noexcept {
    const auto count = static_cast<std::int32_t>(frames);
    if (exponent >= 0.f && exponent <= 1.f && allFinite(samples, count))
        raiseFinite(samples, count, exponent);
    else
        raiseOneByOne(samples, count, exponent);
}
