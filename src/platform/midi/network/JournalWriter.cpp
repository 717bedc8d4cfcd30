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

/// Bits for notes that are off, from the byte of the lowest to that of the highest.
struct OffBits {
    explicit OffBits(const NoteBits& off) {
        forEachNote(off, [&](std::size_t note) {
            bytes[note / 8] = static_cast<std::uint8_t>(bytes[note / 8] | 0x80 >> note % 8);
            low = std::min(low, note / 8);
            high = note / 8;
        });
    }
    std::size_t count() const { return low <= high ? high - low + 1 : 0; }

    std::array<std::uint8_t, 16> bytes{};
    std::size_t low = 15, high = 0;
};

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
    m_newest[channel] = packet;
}

/// All sound off, all notes off, and the modes that imply it. Notes that began before the
/// checkpoint are not known here any more: the message itself has to reach them.
void JournalWriter::endChannel(std::size_t channel, std::uint32_t packet) {
    forEachNote(NoteBits(m_on[channel]), [&](std::size_t note) { set(channel, note, 0, packet); });
}

void JournalWriter::forgetThrough(std::uint32_t packet) {
    m_checkpoint = packet + 1;
    for (std::size_t channel = 0; channel < m_told.size(); ++channel) {
        forEachNote(NoteBits(m_told[channel]), [&](std::size_t note) {
            if (static_cast<std::int32_t>(m_packet[channel][note] - packet) <= 0)
                m_told[channel].reset(note);
        });
        m_on[channel] &= m_told[channel];
    }
}

std::size_t JournalWriter::channels() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(m_told, [](const NoteBits& notes) { return notes.any(); }));
}

bool JournalWriter::isRecent(std::size_t channel, std::uint32_t packet) const {
    return m_told[channel].any() && m_newest[channel] == packet - 1;
}

void JournalWriter::write(std::vector<std::uint8_t>& to, std::uint32_t packet) const {
    const std::size_t count = channels();
    bool recent = false;
    for (std::size_t channel = 0; channel < m_told.size(); ++channel)
        recent |= isRecent(channel, packet);
    const std::size_t contents = count > 0 ? kChannelJournals | (count - 1) : 0;
    ByteWriter(to).u8((recent ? 0 : kNothingRecent) | contents).u16(m_checkpoint);
    std::size_t notesLeft = (kMostBytes - kJournalHeader - count * kChannelMost) / 2;
    for (std::size_t channel = 0; channel < m_told.size(); ++channel) {
        if (m_told[channel].any())
            writeChannel(to, channel, packet, notesLeft);
    }
}

void JournalWriter::writeChannel(std::vector<std::uint8_t>& to, std::size_t channel,
                                 std::uint32_t packet, std::size_t& notesLeft) const {
    const OffBits off(m_told[channel] & ~m_on[channel]);
    const std::size_t logs = std::min(m_on[channel].count(), notesLeft);
    notesLeft -= logs;
    const bool recent = isRecent(channel, packet);
    ByteWriter out(to);
    out.u16((recent ? 0u : 0x8000u) | channel << 11 | (3 + 2 + 2 * logs + off.count()));
    out.u8(kNotesOnly);
    // The bounds 15 and 0 mean 128 logs where there seem to be 127; 15 and 1 that there are 127.
    const std::size_t high = logs == 127 && off.count() == 0 ? 1 : off.high;
    out.u8((recent ? 0u : 0x80u) | std::min<std::size_t>(logs, 127)).u8(off.low << 4 | high);
    std::size_t left = logs;
    forEachNote(m_on[channel], [&](std::size_t note) {
        if (left == 0)
            return;
        --left;
        const bool justNow = m_packet[channel][note] == packet - 1;
        out.u8((justNow ? 0u : 0x80u) | note).u8(kStillPlayable | m_velocity[channel][note]);
    });
    out.bytes(std::span(off.bytes).subspan(off.low, off.count()));
}
