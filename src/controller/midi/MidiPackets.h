#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "midi/MidiTypes.h"

/// What is played over MIDI. The bytes of each message are those that follow its status byte, as
/// far as the packet holds them: note number, then velocity or pressure.
class MidiNoteReceiver {
  public:
    virtual ~MidiNoteReceiver() = default;
    virtual void midiNoteDown(std::span<const std::uint8_t> data) = 0;
    virtual void midiNoteUp(std::span<const std::uint8_t> data) = 0;
    virtual void midiNoteAftertouch(std::span<const std::uint8_t> data) = 0;
};

/// From the bytes of packets to notes. All channels play. There is no running status: data bytes
/// without a status are skipped one by one, and so is the inside of an exclusive message. Nothing
/// is read behind a packet's end. [MIDI thread]; takes no memory.
class MidiPackets {
  public:
    explicit MidiPackets(MidiNoteReceiver& receiver) : m_receiver(receiver) {}

    void handlePacketList(const MIDIPacketList& list);
    void handleMidiPacket(std::span<const std::uint8_t> packet);
    /// `bytes` is what is left of the packet, not empty. How many bytes the message takes, which
    /// may be more than are left.
    std::size_t handleMidiMessage(std::span<const std::uint8_t> bytes);
    /// `type` is the lower half of the status byte, `data` what follows it. How many data bytes to
    /// skip.
    std::size_t handleMidiSystem(int type, std::span<const std::uint8_t> data);

  private:
    void noteOn(std::span<const std::uint8_t> data);

    MidiNoteReceiver& m_receiver;
};
