#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

/// The two letters of a session command.
enum class SessionCommand : std::uint16_t {
    invitation = 0x494E,  // IN
    accepted = 0x4F4B,    // OK
    refused = 0x4E4F,     // NO
    goodbye = 0x4259,     // BY
    clock = 0x434B,       // CK
    feedback = 0x5253,    // RS
};

/// One datagram of the session protocol: 0xFFFF, the command, then
///   IN OK NO BY   version 2 (32 bits), token (32), SSRC (32), name ending with 0 (not in BY)
///   CK            SSRC (32), count (8), 24 unused bits, three times of 0.1 ms (64 each)
///   RS            SSRC (32), sequence number (16), 16 unused bits
struct SessionPacket {
    SessionCommand command = SessionCommand::goodbye;
    std::uint32_t token = 0;  // chosen by who has invited
    std::uint32_t ssrc = 0;   // of the sender's stream
    std::string_view name{};  // as it came; lies in the datagram
    std::uint8_t count = 0;   // which of the three exchanges
    std::array<std::uint64_t, 3> times{};
    std::uint16_t sequence = 0;  // the newest that has been heard

    /// Whether a datagram is meant to be one; else it may be MIDI.
    static bool isOne(std::span<const std::uint8_t> datagram) {
        return datagram.size() >= 2 && datagram[0] == 0xFF && datagram[1] == 0xFF;
    }
    /// Nothing if it is cut short, of another version or unknown.
    static std::optional<SessionPacket> read(std::span<const std::uint8_t> datagram);
    std::vector<std::uint8_t> written() const;
};
