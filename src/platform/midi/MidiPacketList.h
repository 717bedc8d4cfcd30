#pragma once

#include <cstddef>
#include <span>

#include "midi/MidiTypes.h"

/// Bytes of a list before its first packet, and of a packet before its data.
inline constexpr std::size_t kMIDIPacketListHeader = offsetof(MIDIPacketList, packet);
inline constexpr std::size_t kMIDIPacketHeader = offsetof(MIDIPacket, data);
/// The longest data of one packet.
inline constexpr std::size_t kMIDILongestPacket = 65535;

/// Empties a list; its first packet, to be filled.
MIDIPacket* MIDIPacketListInit(MIDIPacketList& list);

/// Appends a packet at `current`, as this or MIDIPacketListInit has returned it; where the next one
/// goes. Null, and nothing is changed, when the list, `listSize` bytes in all, has no room or the
/// data is longer than a packet may be.
MIDIPacket* MIDIPacketListAdd(MIDIPacketList& list, std::size_t listSize, MIDIPacket* current,
                              MIDITimeStamp time, std::span<const std::uint8_t> data);

/// Where the packet behind this one begins.
const MIDIPacket* MIDIPacketNext(const MIDIPacket* packet);

/// The bytes of a packet, and no more.
std::span<const std::uint8_t> MIDIPacketData(const MIDIPacket& packet);
