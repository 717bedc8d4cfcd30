#pragma once

#include "DelayLine.h"

/// Watches a delay line while nothing but silence comes in, for the moment when all of it holds one
/// and the same value and the sound has died away: from then on nothing needs to be computed.
/// [render]
class SteadyLine {
  public:
    /// True when every slot of the loop holds `value`.
    bool holds(const DelayLine::Loop& loop, float& value) const noexcept;
    /// Looks at what a silent render has written: `frames` slots, from the loop's position on.
    void look(const DelayLine::Loop& loop, std::uint32_t frames) noexcept;
    /// Sound has come in.
    void forget() noexcept { m_same = 0; }

  private:
    const float* m_buffer = nullptr;  // looked at last; identity only
    std::uint32_t m_length = 0;
    std::uint32_t m_same = 0;   // latest writes that were all m_value
    std::uint32_t m_value = 0;  // its bits
};
