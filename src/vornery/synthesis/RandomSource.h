#pragma once

#include <cstdint>

/// The program's one random generator: 31-bit numbers in the sequence of the C library's random()
/// after srandom(seed), without its lock. The generator is an additive feedback over 31 words
/// (x_i = x_{i-3} + x_{i-31}; D. E. Knuth, "Seminumerical Algorithms", 3.2.2), seeded by the
/// multiplicative generator of S. K. Park and K. W. Miller (1988).
namespace RandomSource {

/// [control] while nothing renders. Starts the sequence of that seed; 0 means 1, which is also
/// where a fresh process starts.
void seed(std::uint32_t seed) noexcept;

/// [render] The next number, 0 to 2^31 - 1. Drawn from one thread at a time.
std::uint32_t next() noexcept;

}  // namespace RandomSource
