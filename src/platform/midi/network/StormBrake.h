#pragma once

#include <cstddef>

#include "midi/network/SessionTime.h"

/// In a storm of datagrams a thread that wakes for each one does little else than wake. It may then
/// leave them lying for a moment that nobody hears, and take many at once. One thread at a time.
class StormBrake {
  public:
    /// 0.5 ms: well below a short buffer, and at 100,000 datagrams a second fifty of them.
    static constexpr SessionTime kNap = kSessionSecond / 2000;

    /// That many have come; how long to leave the next ones lying.
    SessionTime came(std::size_t datagrams, SessionTime now) {
        if (now - m_since >= kSpan) {
            m_before = now - m_since < 2 * kSpan ? m_count : 0;
            m_since = now;
            m_count = 0;
        }
        m_count += datagrams;
        return m_before + m_count > kMostAwake ? kNap : 0;
    }

  private:
    static constexpr SessionTime kSpan = kSessionSecond / 1000;
    static constexpr std::size_t kMostAwake = 16;  // in one to two spans; no player comes near

    SessionTime m_since = 0;
    std::size_t m_count = 0;   // in this span
    std::size_t m_before = 0;  // in the one before it
};
