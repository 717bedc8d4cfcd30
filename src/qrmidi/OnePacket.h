#pragma once

#include <algorithm>
#include <span>
#include <vector>

#include "log/Log.h"
#include "midi/MidiPacketList.h"

/// Bytes as a list of one packet, to be sent now.
class OnePacket {
  public:
    /// 65536 bytes or more stop the program; `function` is who asks.
    OnePacket(std::span<const std::uint8_t> bytes, const char* function)
        : m_memory(std::max(bytes.size() + kAround, sizeof(MIDIPacketList))) {
        if (bytes.size() > kMIDILongestPacket)
            stopProgram("size < 65536", function, __FILE__, __LINE__);
        MIDIPacket* const packet = MIDIPacketListInit(memory());
        MIDIPacketListAdd(memory(), m_memory.size(), packet, 0, bytes);
    }

    const MIDIPacketList& list() const {
        return *reinterpret_cast<const MIDIPacketList*>(m_memory.data());
    }

  private:
    static constexpr std::size_t kAround = 100;  // bytes, more than the headers need
    MIDIPacketList& memory() { return *reinterpret_cast<MIDIPacketList*>(m_memory.data()); }

    std::vector<std::uint8_t> m_memory;
};
