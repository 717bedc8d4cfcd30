#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "midi/network/ByteReader.h"
#include "midi/network/ChannelNotes.h"

/// What a packet's recovery journal tells about the notes of all channels since its checkpoint
/// (RFC 6295, 5 and appendix A): chapter N is taken, all else is skipped by its length.
struct RecoveryJournal {
    std::uint16_t checkpoint = 0;  // sequence number of the first packet that is covered
    std::bitset<16> channels;      // that are told of
    ChannelNotes off{};            // last told off
    ChannelNotes on{};             // last told on,
    ChannelNotes playable{};       // and still worth being started
    std::array<std::array<std::uint8_t, 128>, 16> velocity{};  // of those that are on

    /// Everything up to the first thing that does not fit; false if there was one.
    bool read(std::span<const std::uint8_t> bytes);

  private:
    bool readChannel(ByteReader& journal);
    bool readNotes(ByteReader& bytes, std::size_t channel);
};
