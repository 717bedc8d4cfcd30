#include "midi/MidiPacketList.h"

#include <cstring>

namespace {

// Packets are addressed by bytes: the record's own array ends at 256.
const std::uint8_t* dataOf(const MIDIPacket* packet) {
    return reinterpret_cast<const std::uint8_t*>(packet) + kMIDIPacketHeader;
}

std::size_t roundedUp(std::size_t bytes) {
    return (bytes + 3) & ~std::size_t{3};
}

}  // namespace

MIDIPacket* MIDIPacketListInit(MIDIPacketList& list) {
    list.numPackets = 0;
    return list.packet;
}

MIDIPacket* MIDIPacketListAdd(MIDIPacketList& list, std::size_t listSize, MIDIPacket* current,
                              MIDITimeStamp time, std::span<const std::uint8_t> data) {
    auto* const begin = reinterpret_cast<std::uint8_t*>(current);
    const auto used =
        static_cast<std::size_t>(begin - reinterpret_cast<const std::uint8_t*>(&list));
    const std::size_t wanted = kMIDIPacketHeader + data.size();
    if (data.size() > kMIDILongestPacket || used > listSize || wanted > listSize - used)
        return nullptr;
    current->timeStamp = time;
    current->length = static_cast<std::uint16_t>(data.size());
    if (!data.empty())
        std::memcpy(begin + kMIDIPacketHeader, data.data(), data.size());
    ++list.numPackets;
    return reinterpret_cast<MIDIPacket*>(begin + roundedUp(wanted));
}

const MIDIPacket* MIDIPacketNext(const MIDIPacket* packet) {
    const auto* const begin = reinterpret_cast<const std::uint8_t*>(packet);
    return reinterpret_cast<const MIDIPacket*>(begin +
                                               roundedUp(kMIDIPacketHeader + packet->length));
}

std::span<const std::uint8_t> MIDIPacketData(const MIDIPacket& packet) {
    return {dataOf(&packet), packet.length};
}
