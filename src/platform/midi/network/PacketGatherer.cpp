#include "midi/network/PacketGatherer.h"

namespace {
// Room for one packet of the longest kind.
constexpr std::size_t kListBytes = 66000;
}  // namespace

PacketGatherer::PacketGatherer(Hand hand)
    : m_hand(std::move(hand)), m_memory(kListBytes / sizeof(std::uint32_t)) {
    begin();
}

void PacketGatherer::begin() {
    m_next = MIDIPacketListInit(list());
}

void PacketGatherer::add(std::uint32_t peer, MIDITimeStamp time,
                         std::span<const std::uint8_t> message) {
    if (peer != m_peer)
        flush();
    m_peer = peer;
    MIDIPacket* next = MIDIPacketListAdd(list(), kListBytes, m_next, time, message);
    if (!next) {
        flush();
        next = MIDIPacketListAdd(list(), kListBytes, m_next, time, message);
    }
    if (next)
        m_next = next;
}

void PacketGatherer::flush() {
    if (list().numPackets > 0)
        m_hand(m_peer, list());
    begin();
}
