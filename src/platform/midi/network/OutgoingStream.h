#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "midi/network/JournalWriter.h"
#include "midi/network/SessionTime.h"

/// What is played to one peer: messages go in, RTP-MIDI datagrams with a journal come out. While
/// the peer has not told that it has heard the last notes, a few empty packets follow, so that the
/// loss of a last note-off is made up for though nothing more is played (RFC 4696, 4.2).
class OutgoingStream {
  public:
    static constexpr std::size_t kLongestDatagram = 1400;
    /// Longer messages are dropped whole.
    static constexpr std::size_t kLongestMessage = 65536;
    using Emit = std::function<void(std::span<const std::uint8_t> datagram)>;

    OutgoingStream(std::uint32_t ssrc, std::uint16_t firstSequence);

    /// Whole messages, one behind the other; what is none is left out.
    void send(std::span<const std::uint8_t> messages, SessionTime now, const Emit& emit);
    /// The peer has heard what it will hear up to that packet.
    void heardThrough(std::uint16_t sequence);
    SessionTime due() const { return m_repeats > 0 ? m_repeatAt : kNever; }
    void turn(SessionTime now, const Emit& emit);

  private:
    void begin();
    void append(std::span<const std::uint8_t> message, SessionTime now, const Emit& emit);
    void appendInSegments(std::span<const std::uint8_t> message, SessionTime now, const Emit& emit);
    void finish(SessionTime now, const Emit& emit);
    std::size_t room() const;

    std::uint32_t m_ssrc;
    std::uint32_t m_next;  // packet
    JournalWriter m_journal;
    std::vector<std::uint8_t> m_commands, m_recovery, m_datagram;
    SessionTime m_repeatAt = 0;
    SessionTime m_repeatAfter = 0;
    int m_repeats = 0;  // left
};
