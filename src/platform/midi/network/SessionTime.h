#pragma once

#include <cstdint>
#include <limits>

/// Nanoseconds of the system's monotonic clock.
using SessionTime = std::uint64_t;

inline constexpr SessionTime kSessionSecond = 1'000'000'000;
/// Later than anything.
inline constexpr SessionTime kNever = std::numeric_limits<SessionTime>::max();

/// The clock that sessions share: 10 kHz.
constexpr std::uint64_t sessionTicks(SessionTime time) {
    return time / (kSessionSecond / 10'000);
}
