#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "midi/network/ByteWriter.h"
#include "midi/network/ChannelNotes.h"

/// The recovery journal of our own stream: chapter N of RFC 6295, appendix A.6, for every note
/// that a packet since the checkpoint has started or ended. Other chapters are never needed to end
/// a note. Packets are counted by 32 bits, of which the wire carries 16.
class JournalWriter {
  public:
    /// The longest that write() appends.
    static constexpr std::size_t kMostBytes = 900;

    explicit JournalWriter(std::uint32_t firstPacket) : m_checkpoint(firstPacket) {}

    /// A message that the given packet carries.
    void follow(std::span<const std::uint8_t> message, std::uint32_t packet);
    /// The receiver has heard everything up to that packet.
    void forgetThrough(std::uint32_t packet);
    bool isEmpty() const { return channels() == 0; }
    std::uint32_t checkpoint() const { return m_checkpoint; }

    /// The journal of that packet, before its own messages are followed. If more notes are held
    /// than there is room for, the last ones of the last channels are left out; ends never are.
    void write(std::vector<std::uint8_t>& to, std::uint32_t packet) const;

  private:
    void set(std::size_t channel, std::size_t note, std::uint8_t velocity, std::uint32_t packet);
    void endChannel(std::size_t channel, std::uint32_t packet);
    void writeChannel(std::vector<std::uint8_t>& to, std::size_t channel, std::uint32_t packet,
                      std::size_t& notesLeft) const;
    bool isRecent(std::size_t channel, std::uint32_t packet) const;
    /// Those with anything to tell.
    std::size_t channels() const;

    std::uint32_t m_checkpoint;
    ChannelNotes m_told{};  // since the checkpoint
    ChannelNotes m_on{};    // of these
    std::array<std::array<std::uint8_t, 128>, 16> m_velocity{};
    std::array<std::array<std::uint32_t, 128>, 16> m_packet{};  // that told it last
    std::array<std::uint32_t, 16> m_newest{};                   // of these, for each channel
};
