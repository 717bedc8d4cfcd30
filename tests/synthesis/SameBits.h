#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <span>

/// Floats that must be the same to the last bit, told apart by place and value.
inline testing::AssertionResult sameBits(std::span<const float> got,
                                         std::span<const float> wanted) {
    for (std::size_t k = 0; k < wanted.size(); ++k)
        if (std::bit_cast<std::uint32_t>(got[k]) != std::bit_cast<std::uint32_t>(wanted[k]))
            return testing::AssertionFailure() << "at " << k << " of " << wanted.size() << ": "
                                               << got[k] << " instead of " << wanted[k];
    return testing::AssertionSuccess();
}

inline testing::AssertionResult sameBits(float got, float wanted) {
    return sameBits(std::span(&got, 1), std::span(&wanted, 1));
}

/// Floats that are equal, whatever the sign of a zero.
inline testing::AssertionResult sameValues(std::span<const float> got,
                                           std::span<const float> wanted) {
    for (std::size_t k = 0; k < wanted.size(); ++k)
        if (!(got[k] == wanted[k]))
            return testing::AssertionFailure() << "at " << k << " of " << wanted.size() << ": "
                                               << got[k] << " instead of " << wanted[k];
    return testing::AssertionSuccess();
}

/// Each sample within 1 of the other in 16 bits; both beyond full scale counts as the same.
inline testing::AssertionResult withinOneStep(std::span<const float> got,
                                              std::span<const float> wanted) {
    auto limited = [](float x) { return std::fmax(-1.f, std::fmin(1.f, x)); };
    for (std::size_t k = 0; k < wanted.size(); ++k)
        if (!(std::fabs(limited(got[k]) - limited(wanted[k])) <= 1.f / 32768.f))
            return testing::AssertionFailure() << "at " << k << " of " << wanted.size() << ": "
                                               << got[k] << " instead of " << wanted[k];
    return testing::AssertionSuccess();
}
