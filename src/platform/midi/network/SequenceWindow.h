#pragma once

#include <cstdint>
#include <optional>

/// Puts packets into order by their sequence numbers of 16 bits, and knows which are missing.
class SequenceWindow {
  public:
    enum class Arrival {
        first,    // the stream has begun, perhaps again: before it, anything may be missing
        newer,    // than all before it
        late,     // was missing until now
        dropped,  // a duplicate, or too old to tell
    };
    struct Place {
        Arrival arrival;
        std::uint32_t index;  // the sequence number, going on beyond 16 bits
    };

    Place take(std::uint16_t sequence);
    /// Whether something is missing that nothing has made up for.
    bool hasGap() const { return m_gap; }
    /// Whether a journal from that checkpoint on makes up for all that is missing.
    bool isCoveredFrom(std::uint16_t checkpoint) const;
    void makeUp();
    /// Up to here nothing is missing that has not been made up for.
    std::uint16_t sureThrough() const;

  private:
    Place start(std::uint16_t sequence);
    Place advance(std::uint32_t distance);
    Place lookBack(std::uint16_t sequence, std::uint32_t distance);

    bool m_started = false;
    std::uint32_t m_newest = 0;
    std::uint64_t m_missing = 0;  // bit n: the packet n + 1 before the newest
    bool m_gap = false;
    bool m_outOfSight = false;  // some are missing from further back than m_missing tells
    bool m_sureKnown = false;
    std::uint32_t m_sure = 0;                // the newest before the gap
    std::optional<std::uint16_t> m_restart;  // what would come next in a stream begun again
};
