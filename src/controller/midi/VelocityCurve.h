#pragma once

#include <cstdint>

/// From the velocity of a key to the one that it is played with.
enum class VelocityCurve : std::uint8_t {
    linear,  // as it was struck
    soft,    // loud under light hands
    hard,    // soft under heavy ones
    fixed,   // always kFixedVelocity
};

inline constexpr std::uint8_t kFixedVelocity = 100;

/// `velocity` is 1 to 127, and so is the answer; soft and hard keep both ends. Damaged ones above
/// count as 127.
std::uint8_t curved(VelocityCurve curve, std::uint8_t velocity);
