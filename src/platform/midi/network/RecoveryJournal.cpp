#include "midi/network/RecoveryJournal.h"

namespace {

// First byte of a journal.
constexpr unsigned kHasSystemJournal = 0x40;
constexpr unsigned kHasChannelJournals = 0x20;
// Chapters before that of the notes, in a channel journal's table of contents.
constexpr unsigned kChapterP = 0x80;
constexpr unsigned kChapterC = 0x40;
constexpr unsigned kChapterM = 0x20;
constexpr unsigned kChapterW = 0x10;
constexpr unsigned kChapterN = 0x08;
// Lengths of ten bits count their own header.
constexpr unsigned kLengthBits = 0x3FF;

/// Nothing, and the reader has failed, if the length is shorter than the header itself.
std::span<const std::uint8_t> takeBody(ByteReader& bytes, std::size_t length, std::size_t header) {
    return bytes.take(length < header ? bytes.left() + 1 : length - header);
}

void skipSystemJournal(ByteReader& bytes) {
    takeBody(bytes, bytes.u16() & kLengthBits, 2);
}

void skipControllers(ByteReader& bytes) {
    bytes.take(2 * ((bytes.u8() & 0x7Fu) + std::size_t{1}));
}

void skipParameters(ByteReader& bytes) {
    takeBody(bytes, bytes.u16() & kLengthBits, 2);
}

void skipToNotes(ByteReader& bytes, unsigned contents) {
    if (contents & kChapterP)
        bytes.take(3);
    if (contents & kChapterC)
        skipControllers(bytes);
    if (contents & kChapterM)
        skipParameters(bytes);
    if (contents & kChapterW)
        bytes.take(2);
}

}  // namespace

bool RecoveryJournal::read(std::span<const std::uint8_t> bytes) {
    ByteReader journal(bytes);
    const unsigned flags = journal.u8();
    checkpoint = journal.u16();
    if (flags & kHasSystemJournal)
        skipSystemJournal(journal);
    const unsigned count = flags & kHasChannelJournals ? (flags & 0x0F) + 1 : 0;
    for (unsigned i = 0; i < count && !journal.failed(); ++i) {
        if (!readChannel(journal))
            return false;
    }
    return !journal.failed();
}

bool RecoveryJournal::readChannel(ByteReader& journal) {
    const unsigned header = journal.u16();
    const unsigned contents = journal.u8();
    const std::size_t channel = header >> 11 & 0x0F;
    ByteReader chapters(takeBody(journal, header & kLengthBits, 3));
    if (journal.failed() || channels[channel])  // no channel comes twice
        return false;
    channels.set(channel);
    skipToNotes(chapters, contents);
    return !chapters.failed() && (!(contents & kChapterN) || readNotes(chapters, channel));
}

/// Logs of notes that are on, two bytes each, then one bit for each that is off. Told of the
/// channel only if all of it is there.
bool RecoveryJournal::readNotes(ByteReader& bytes, std::size_t channel) {
    const unsigned count = bytes.u8() & 0x7F;
    const unsigned bounds = bytes.u8();
    const unsigned low = bounds >> 4, high = bounds & 0x0F;
    const bool full = count == 127 && low == 15 && high == 0;
    ByteReader logs(bytes.take(std::size_t{2} * (full ? 128 : count)));
    ByteReader offBits(bytes.take(low <= high ? high - low + 1 : 0));
    if (bytes.failed())
        return false;
    for (unsigned note = 8 * low; offBits.left() > 0; note += 8) {
        const unsigned bits = offBits.u8();
        for (unsigned i = 0; i < 8; ++i)
            off[channel][note + i] = bits >> (7 - i) & 1;
    }
    while (logs.left() > 0) {
        const unsigned note = logs.u8() & 0x7F;
        const unsigned strength = logs.u8();
        if (off[channel][note] || (strength & 0x7F) == 0)
            continue;  // a contradiction is no reason to start a note
        on[channel].set(note);
        playable[channel][note] = strength & 0x80;
        velocity[channel][note] = strength & 0x7F;
    }
    return true;
}
