#pragma once

#include <cstdint>
#include <optional>

#include "midi/network/ByteReader.h"
#include "midi/network/ExclusiveJoiner.h"
#include "midi/network/MidiCommandSink.h"
#include "midi/network/RtpMidiPacket.h"

/// Reads one packet's commands (RFC 6295, 3): times between them, running status, exclusive
/// messages in segments, real-time bytes anywhere. It ends at the first thing that cannot be;
/// what came before has been told.
class MidiCommandList {
  public:
    /// `exclusive` keeps what the next packet may go on with.
    MidiCommandList(const RtpMidiPacket& packet, ExclusiveJoiner& exclusive, MidiCommandSink& sink);

    void read();

  private:
    bool skipDelta();
    bool readCommand();
    bool readMessage(std::uint8_t status);
    bool readExclusive();
    bool skipUndefined();
    std::optional<std::uint8_t> dataByte();
    std::optional<std::uint8_t> anyByte();
    void tell(std::span<const std::uint8_t> message);

    ByteReader m_bytes;
    bool m_deltaFirst;
    std::uint8_t m_runningStatus = 0;
    ExclusiveJoiner& m_exclusive;
    MidiCommandSink& m_sink;
};
