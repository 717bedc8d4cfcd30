#include "midi/network/JournalWriter.h"

#include <algorithm>

namespace {

// First byte of a journal. S tells that the packet just before has nothing in it.
constexpr unsigned kNothingRecent = 0x80;
constexpr unsigned kChannelJournals = 0x20;
constexpr unsigned kNotesOnly = 0x08;  // table of contents: chapter N
constexpr unsigned kStillPlayable = 0x80;
// Header of the journal; header of a channel and of its chapter N, and bits for all its ends.
constexpr std::size_t kJournalHeader = 3;
constexpr std::size_t kChannelMost = 3 + 2 + 16;

/// Where the bits of ends begin and end, in bytes of the 128 bits; 15 and 0 or 1 if there are none.
struct OffBounds {
    unsigned low = 15, high = 0;
};

OffBounds boundsOf(const std::bitset<128>& off, std::size_t logs) {
    OffBounds bounds{15, logs == 127 ? 1u : 0u};  // 0 would mean 128 logs
    if (off.none())
        return bounds;
    for (unsigned note = 0; note < off.size(); ++note) {
        if (off[note]) {
            bounds.low = std::min(bounds.low, note / 8);
            bounds.high = note / 8;
        }
    }
    return bounds;
}

}  // namespace

void JournalWriter::follow(std::span<const std::uint8_t> message, std::uint32_t packet) {
    const std::size_t channel = message[0] & 0x0F;
    const int kind = message[0] >> 4;
    if (kind == 8 || kind == 9)
        set(channel, message[1], kind == 9 ? message[2] : std::uint8_t{0}, packet);
    else if (kind == 11 && (message[1] == 120 || message[1] >= 123))
        endChannel(channel, packet);
}

void JournalWriter::set(std::size_t channel, std::size_t note, std::uint8_t velocity,
                        std::uint32_t packet) {
    m_told[channel].set(note);
    m_on[channel][note] = velocity != 0;
    m_velocity[channel][note] = velocity;
    m_packet[channel][note] = packet;
}

/// All sound off, all notes off, and the modes that imply it. Notes that began before the
/// checkpoint are not known here any more: the message itself has to reach them.
void JournalWriter::endChannel(std::size_t channel, std::uint32_t packet) {
    for (std::size_t note = 0; m_on[channel].any() && note < 128; ++note) {
        if (m_on[channel][note])
            set(channel, note, 0, packet);
    }
}

void JournalWriter::forgetThrough(std::uint32_t packet) {
    m_checkpoint = packet + 1;
    for (std::size_t channel = 0; channel < m_told.size(); ++channel) {
        for (std::size_t note = 0; m_told[channel].any() && note < 128; ++note) {
            if (m_told[channel][note] &&
                static_cast<std::int32_t>(m_packet[channel][note] - packet) <= 0)
                m_told[channel].reset(note);
        }
        m_on[channel] &= m_told[channel];
    }
}

bool JournalWriter::isEmpty() const {
    return std::ranges::all_of(m_told, [](const auto& notes) { return notes.none(); });
}

void JournalWriter::write(std::vector<std::uint8_t>& to, std::uint32_t packet) const {
    unsigned channels = 0;
    bool recent = false;
    for (std::size_t channel = 0; channel < m_told.size(); ++channel) {
        channels += m_told[channel].any();
        recent |= isRecent(channel, packet);
    }
    const unsigned contents = channels > 0 ? kChannelJournals | (channels - 1) : 0;
    ByteWriter(to).u8((recent ? 0 : kNothingRecent) | contents).u16(m_checkpoint);
    std::size_t notesLeft = (kMostBytes - kJournalHeader - channels * kChannelMost) / 2;
    for (std::size_t channel = 0; channel < m_told.size(); ++channel) {
        if (m_told[channel].any())
            writeChannel(to, channel, packet, notesLeft);
    }
}

bool JournalWriter::isRecent(std::size_t channel, std::uint32_t packet) const {
    for (std::size_t note = 0; m_told[channel].any() && note < 128; ++note) {
        if (m_told[channel][note] && m_packet[channel][note] == packet - 1)
            return true;
    }
    return false;
}

void JournalWriter::writeChannel(std::vector<std::uint8_t>& to, std::size_t channel,
                                 std::uint32_t packet, std::size_t& notesLeft) const {
    const auto off = m_told[channel] & ~m_on[channel];
    const std::size_t logs = std::min(m_on[channel].count(), notesLeft);
    notesLeft -= logs;
    const OffBounds bounds = boundsOf(off, logs);
    const std::size_t offBytes = bounds.low <= bounds.high ? bounds.high - bounds.low + 1 : 0;
    const std::size_t length = 3 + 2 + 2 * logs + offBytes;
    const bool recent = isRecent(channel, packet);
    ByteWriter out(to);
    out.u16((recent ? 0u : 0x8000u) | channel << 11 | length).u8(kNotesOnly);
    const auto endedJustNow = [&](std::size_t note) {
        return off[note] && m_packet[channel][note] == packet - 1;
    };
    bool ended = false;
    for (std::size_t note = 0; off.any() && note < 128; ++note)
        ended |= endedJustNow(note);
    out.u8((ended ? 0u : 0x80u) | std::min<std::size_t>(logs, 127));
    out.u8(bounds.low << 4 | bounds.high);
    std::size_t written = 0;
    for (std::size_t note = 0; written < logs; ++note) {
        if (!m_on[channel][note])
            continue;
        const bool justNow = m_packet[channel][note] == packet - 1;
        out.u8((justNow ? 0u : 0x80u) | note).u8(kStillPlayable | m_velocity[channel][note]);
        ++written;
    }
    for (std::size_t byte = bounds.low; byte < bounds.low + offBytes; ++byte) {
        unsigned bits = 0;
        for (std::size_t i = 0; i < 8; ++i)
            bits = bits << 1 | off[8 * byte + i];
        out.u8(bits);
    }
}
