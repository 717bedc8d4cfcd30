#pragma once

#include <functional>
#include <vector>

#include "midi/MidiPacketList.h"

/// Gathers messages of one peer into lists, so that a storm of them costs few calls. One thread at
/// a time.
class PacketGatherer {
  public:
    using Hand = std::function<void(std::uint32_t peer, const MIDIPacketList& list)>;
    explicit PacketGatherer(Hand hand);

    /// In the order played. Messages that are longer than a packet may be are dropped.
    void add(std::uint32_t peer, MIDITimeStamp time, std::span<const std::uint8_t> message);
    /// Hands over what is there.
    void flush();

  private:
    MIDIPacketList& list() { return *reinterpret_cast<MIDIPacketList*>(m_memory.data()); }
    void begin();

    const Hand m_hand;
    std::vector<std::uint32_t> m_memory;  // aligned for a list
    MIDIPacket* m_next = nullptr;
    std::uint32_t m_peer = 0;
};
