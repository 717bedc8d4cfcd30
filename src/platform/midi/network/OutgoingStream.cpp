#include "midi/network/OutgoingStream.h"

#include <algorithm>

#include "midi/network/MidiMessageSplitter.h"
#include "midi/network/RtpMidiPacket.h"

namespace {

constexpr std::size_t kRtpHeader = 12;
constexpr std::size_t kListHeader = 2;
constexpr SessionTime kFirstRepeat = kSessionSecond / 10;  // then twice as long each time
constexpr int kMostRepeats = 6;
constexpr unsigned kMarker = 0x80;  // the packet has commands

}  // namespace

OutgoingStream::OutgoingStream(std::uint32_t ssrc, std::uint16_t firstSequence)
    : m_ssrc(ssrc), m_next(firstSequence), m_journal(firstSequence) {}

void OutgoingStream::send(std::span<const std::uint8_t> messages, SessionTime now,
                          const Emit& emit) {
    begin();
    for (auto message = takeMidiMessage(messages); !message.empty();
         message = takeMidiMessage(messages))
        append(message, now, emit);
    if (!m_commands.empty())
        finish(now, emit);
    m_repeats = m_journal.isEmpty() ? 0 : kMostRepeats;
    m_repeatAfter = kFirstRepeat;
    m_repeatAt = now + m_repeatAfter;
}

/// The journal comes first: it does not name what its own packet carries, and says what room there
/// is.
void OutgoingStream::begin() {
    m_commands.clear();
    m_recovery.clear();
    m_journal.write(m_recovery, m_next);
}

std::size_t OutgoingStream::room() const {
    const std::size_t time = m_commands.empty() ? 0 : 1;
    const std::size_t used =
        kRtpHeader + kListHeader + m_recovery.size() + m_commands.size() + time;
    return kLongestDatagram - std::min(kLongestDatagram, used);
}

void OutgoingStream::append(std::span<const std::uint8_t> message, SessionTime now,
                            const Emit& emit) {
    if (message.size() > kLongestMessage)
        return;
    if (message.size() > room() && !m_commands.empty()) {
        finish(now, emit);
        begin();
    }
    if (message.size() > room())
        return appendInSegments(message, now, emit);
    ByteWriter to(m_commands);
    if (!m_commands.empty())
        to.u8(0);  // at the same time as the one before
    to.bytes(message);
    m_journal.follow(message, m_next);
}

/// Only exclusive messages are that long. Each segment is a packet's only command: F0..F0, F7..F0
/// and at last F7..F7.
void OutgoingStream::appendInSegments(std::span<const std::uint8_t> message, SessionTime now,
                                      const Emit& emit) {
    auto data = message.subspan(1, message.size() - 2);
    for (unsigned first = 0xF0; !data.empty(); first = 0xF7) {
        const auto part = data.first(std::min(data.size(), room() - 2));
        data = data.subspan(part.size());
        ByteWriter(m_commands).u8(first).bytes(part).u8(data.empty() ? 0xF7 : 0xF0);
        finish(now, emit);
        begin();
    }
}

void OutgoingStream::finish(SessionTime now, const Emit& emit) {
    m_datagram.clear();
    ByteWriter to(m_datagram);
    to.u8(0x80).u8((m_commands.empty() ? 0 : kMarker) | RtpMidiPacket::kPayloadType);
    to.u16(m_next).u32(sessionTicks(now)).u32(m_ssrc);
    const std::size_t length = m_commands.size();
    if (length < 16)
        to.u8(0x40 | length);
    else
        to.u16(0xC000 | length);
    to.bytes(m_commands).bytes(m_recovery);
    ++m_next;
    emit(m_datagram);
}

void OutgoingStream::heardThrough(std::uint16_t sequence) {
    const auto ahead =
        static_cast<std::int16_t>(static_cast<std::uint16_t>(sequence - (m_next - 1)));
    const std::uint32_t packet = m_next - 1 + static_cast<std::uint32_t>(ahead);
    if (ahead > 0 || static_cast<std::int32_t>(packet - m_journal.checkpoint()) < 0)
        return;
    m_journal.forgetThrough(packet);
    if (m_journal.isEmpty())
        m_repeats = 0;
}

void OutgoingStream::turn(SessionTime now, const Emit& emit) {
    if (now < due())
        return;
    begin();
    finish(now, emit);
    m_repeatAfter *= 2;
    m_repeatAt = now + m_repeatAfter;
    --m_repeats;
}
