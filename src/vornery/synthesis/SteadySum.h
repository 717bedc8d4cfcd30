#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

/// How a single-precision sum goes on for a while: value j is p + j * advance, without any
/// rounding.
struct SteadySum {
    float advance;
    std::uint32_t count;  // values, `p` the first; 0 when not worth it

    /// Writes the values from `p` on.
    void write(float p, float* out) const {
        const auto values = static_cast<std::int32_t>(count);
        for (std::int32_t j = 0; j < values; ++j)
            out[j] = p + static_cast<float>(j) * advance;
    }
    float last(float p) const {
        return p + static_cast<float>(static_cast<std::int32_t>(count) - 1) * advance;
    }
};

/// A step that is added again and again: p, p + r, (p + r) + r, each rounded. Between two powers of
/// two all values are multiples of one unit, so every rounded step is the same exactly
/// representable advance. (A step that ends in half a unit is rounded to even: from an odd multiple
/// the first step may differ from all later ones, which is why two steps are looked at.)
class SteadyStep {
  public:
    explicit SteadyStep(float step) : m_step(step), m_inverse(1.f / step) {}

    /// From `p` on while below `limit`, `most` values at most. May stop a few values early.
    SteadySum from(float p, float limit, std::uint32_t most) const {
        // There is room for few values before the next power of two while p is only a few steps.
        if (!(p >= m_step * kFewest) || !(m_step > 0.f) || most < kFewest)
            return {0.f, 0};
        const std::uint32_t exponent = std::bit_cast<std::uint32_t>(p) & 0x7f800000;
        const auto nextPower = std::bit_cast<float>(exponent + 0x00800000);
        const float end = limit < nextPower ? limit : nextPower;
        const float second = p + m_step;
        const float third = second + m_step;
        const float advance = second - p;
        if (!(third < end) || third - second != advance)
            return {0.f, 0};
        const std::uint32_t count = std::min(valuesBelow(end, p, advance), most);
        return {advance, count < kFewest ? 0 : count};
    }

  private:
    static constexpr std::uint32_t kFewest = 8;
    static constexpr std::uint32_t kUnlimited = 0xffffffff;

    std::uint32_t valuesBelow(float end, float p, float advance) const {
        // The advance differs from the step by less than one in 2^12, so that over 2^12 steps two
        // values less than the quotient are safe.
        if (p < m_step * 4096.f)
            return static_cast<std::uint32_t>((end - p) * m_inverse) - 1;
        if (advance == 0.f)
            return kUnlimited;
        // Exact: both are multiples of a unit of which they hold less than 2^25.
        const double steps = (double{end} - double{p}) / double{advance};
        if (!(steps < kUnlimited))
            return kUnlimited;
        const auto whole = static_cast<std::uint32_t>(steps);
        return whole + (whole < steps ? 1 : 0);
    }

    float m_step;
    float m_inverse;
};
