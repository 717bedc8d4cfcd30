#pragma once

#include <cstdint>
#include <optional>
#include <span>

/// A datagram of MIDI taken apart (RFC 3550, 5.1 and RFC 6295, 3 and 4). Its parts lie in it.
struct RtpMidiPacket {
    static constexpr std::uint8_t kPayloadType = 97;

    std::uint16_t sequence = 0;
    std::uint32_t timestamp = 0;  // 0.1 ms; only differences mean anything
    std::uint32_t ssrc = 0;
    std::span<const std::uint8_t> commands;
    bool startsWithDelta = false;           // a time stands before the first command, too
    std::span<const std::uint8_t> journal;  // empty if there is none

    /// Nothing if a part does not fit into the datagram. Any payload type is taken: the type's
    /// number is agreed on nowhere.
    static std::optional<RtpMidiPacket> read(std::span<const std::uint8_t> datagram);
};
