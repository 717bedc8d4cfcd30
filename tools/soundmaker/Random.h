#pragma once

#include <cstdint>

/// The same numbers on every machine, from a seed above 0: "xorshift64*", Sebastiano Vigna, "An
/// experimental exploration of Marsaglia's xorshift generators, scrambled", 2016.
class Random {
  public:
    explicit Random(std::uint64_t seed) : m_state(seed) {}

    /// In [0, 1).
    double uniform() {
        m_state ^= m_state >> 12;
        m_state ^= m_state << 25;
        m_state ^= m_state >> 27;
        return double((m_state * 0x2545F4914F6CDD1Du) >> 11) * 0x1p-53;
    }
    /// In [low, high).
    double between(double low, double high) { return low + (high - low) * uniform(); }
    /// White noise in [-1, 1).
    double white() { return between(-1, 1); }

  private:
    std::uint64_t m_state;
};
