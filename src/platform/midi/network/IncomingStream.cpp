#include "midi/network/IncomingStream.h"

#include <array>

#include "midi/network/MidiCommandList.h"
#include "midi/network/RecoveryJournal.h"

bool IncomingStream::take(const RtpMidiPacket& packet) {
    const auto [arrival, index] = m_order.take(packet.sequence);
    if (arrival == SequenceWindow::Arrival::dropped)
        return false;
    m_packet = index;
    m_late = arrival == SequenceWindow::Arrival::late;
    if (arrival == SequenceWindow::Arrival::first)
        begin();
    if (m_late) {
        ExclusiveJoiner none;
        MidiCommandList(packet, none, *this).read();
        return true;
    }
    if (index != m_newest + 1)
        m_exclusive.cancel();
    m_newest = index;
    if (m_order.hasGap() && !packet.journal.empty())
        recover(packet.journal, index);
    MidiCommandList(packet, m_exclusive, *this).read();
    // What came before the first packet, only that one's journal can tell: nothing is held yet.
    if (arrival == SequenceWindow::Arrival::first)
        m_order.makeUp();
    return true;
}

void IncomingStream::begin() {
    releaseAll();
    m_changes = {};
    m_exclusive.cancel();
    m_notesSettled = 0;
}

/// RFC 6295, 4 and appendix A.6. Where the journal does not reach back to the last packet that was
/// heard, nobody can say whether what it does not name is still held; such a note ends.
void IncomingStream::recover(std::span<const std::uint8_t> bytes, std::uint32_t packet) {
    RecoveryJournal journal;
    const bool whole = journal.read(bytes);
    ChannelNotes ending = journal.off;
    if (whole && !m_order.isCoveredFrom(journal.checkpoint)) {
        for (std::size_t channel = 0; channel < ending.size(); ++channel)
            ending[channel] = ~journal.on[channel];
    }
    m_notes.release(ending, m_sink);
    for (std::size_t channel = 0; channel < ending.size(); ++channel) {
        const NoteBits missing = journal.playable[channel] & ~m_notes.held()[channel];
        forEachNote(missing, [&](std::size_t note) {
            handOn(std::array{static_cast<std::uint8_t>(0x90 | channel),
                              static_cast<std::uint8_t>(note), journal.velocity[channel][note]});
        });
    }
    if (!whole)
        return;
    m_order.makeUp();
    m_notesSettled = packet;
}

void IncomingStream::command(std::span<const std::uint8_t> message) {
    if (!m_late)
        return handOn(message);
    const bool isNote = message[0] >> 4 == 8 || message[0] >> 4 == 9;
    const bool settled = static_cast<std::int32_t>(m_packet - m_notesSettled) < 0;
    if (m_changes.isNews(message, m_packet) && !(isNote && settled))
        handOn(message);
}

void IncomingStream::handOn(std::span<const std::uint8_t> message) {
    m_changes.note(message, m_packet);
    m_notes.follow(message);
    m_sink.command(message);
}
