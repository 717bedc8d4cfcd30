#pragma once

#include <cstdint>
#include <span>

#include "midi/network/ExclusiveJoiner.h"
#include "midi/network/LastChanges.h"
#include "midi/network/MidiCommandSink.h"
#include "midi/network/PeerNotes.h"
#include "midi/network/RtpMidiPacket.h"
#include "midi/network/SequenceWindow.h"

/// What one peer plays: packets go in as they arrive, messages come out. After a loss the next
/// journal puts the notes right before the packet's own commands. A late packet is worth only what
/// no newer packet and no journal has told: notes and controllers not set since.
class IncomingStream : private MidiCommandSink {
  public:
    explicit IncomingStream(MidiCommandSink& sink) : m_sink(sink) {}

    /// Whether there was anything new in it.
    bool take(const RtpMidiPacket& packet);
    /// The newest packet that the sender need not keep in its journal.
    std::uint16_t heardThrough() const { return m_order.sureThrough(); }
    void releaseAll() { m_notes.releaseAll(m_sink); }
    const PeerNotes& notes() const { return m_notes; }

  private:
    void begin();
    void recover(std::span<const std::uint8_t> journal, std::uint32_t packet);
    void command(std::span<const std::uint8_t> message) override;
    void handOn(std::span<const std::uint8_t> message);

    MidiCommandSink& m_sink;
    SequenceWindow m_order;
    PeerNotes m_notes;
    LastChanges m_changes;
    ExclusiveJoiner m_exclusive;
    std::uint32_t m_notesSettled = 0;  // notes of packets before this one are made up for
    std::uint32_t m_packet = 0;        // whose commands are being read
    std::uint32_t m_newest = 0;
    bool m_late = false;
};
