#pragma once

#include <bit>
#include <cstdint>

/// A single-precision sum that grows by the same step again and again: p, p + r, (p + r) + r, each
/// rounded. Between two powers of two all values are multiples of one unit, so every rounded step
/// is the same exactly representable advance, and value j is p + j * advance without any rounding.
/// (A step that ends in half a unit is rounded to even: from an odd multiple the first step may
/// differ from all later ones, which is why two steps are looked at.)
struct SteadySum {
    float advance;
    std::uint32_t count;  // values, `p` the first, that are p + j * advance; 0 when not worth it
};

/// Fewer values than this are summed one by one.
inline constexpr std::uint32_t kShortestSteadySum = 8;

/// How the sum goes on from `p` while it is below `limit`, for `most` values at most.
inline SteadySum steadySum(float p, float step, float limit, std::uint32_t most) {
    // A power of two further on there is room for few values only while the step is not small.
    if (!(p >= step * kShortestSteadySum) || !(step > 0.f) || most < kShortestSteadySum)
        return {0.f, 0};
    constexpr std::uint32_t kExponent = 0x7f800000;
    const std::uint32_t bits = std::bit_cast<std::uint32_t>(p) & kExponent;
    const float nextPower = std::bit_cast<float>(bits + 0x00800000);
    const float end = nextPower < limit ? nextPower : limit;
    const float second = p + step;
    const float third = second + step;
    const float advance = second - p;
    if (bits == 0 || !(third < end) || third - second != advance)
        return {0.f, 0};
    if (advance == 0.f)
        return {0.f, most};
    // Exact where it matters: both are multiples of a unit of which they hold less than 2^25.
    const double steps = (double{end} - double{p}) / double{advance};
    if (!(steps < most))
        return {advance, most};
    auto count = static_cast<std::uint32_t>(steps);
    count += count < steps;
    return {advance, count < kShortestSteadySum ? 0 : count};
}

/// Writes the values of a steady sum from `p` on.
inline void writeSteadySum(float p, const SteadySum& sum, float* out) {
    const auto count = static_cast<std::int32_t>(sum.count);
    for (std::int32_t j = 0; j < count; ++j)
        out[j] = p + static_cast<float>(j) * sum.advance;
}
