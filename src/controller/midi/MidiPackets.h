#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "midi/MidiTypes.h"

/// What is played over MIDI, on channels 0 to 15. The bytes of a note's message are those that
/// follow its status byte, as far as the packet holds them: note number, then velocity or pressure.
/// Of the others only whole ones are told, and none with a status byte among its data.
class MidiNoteReceiver {
  public:
    virtual ~MidiNoteReceiver() = default;
    virtual void midiNoteDown(std::uint8_t channel, std::span<const std::uint8_t> data) = 0;
    virtual void midiNoteUp(std::uint8_t channel, std::span<const std::uint8_t> data) = 0;
    virtual void midiNoteAftertouch(std::uint8_t channel, std::span<const std::uint8_t> data) = 0;
    virtual void midiControlChange(std::uint8_t /*channel*/, std::uint8_t /*controller*/,
                                   std::uint8_t /*value*/) {}
    virtual void midiProgramChange(std::uint8_t /*channel*/, std::uint8_t /*program*/) {}
    virtual void midiChannelPressure(std::uint8_t /*channel*/, std::uint8_t /*pressure*/) {}
    /// The lower and the upper seven bits; together 8192 is the centre.
    virtual void midiPitchBend(std::uint8_t /*channel*/, std::uint8_t /*low*/,
                               std::uint8_t /*high*/) {}
};

/// From the bytes of packets to notes and controllers. There is no running status: data bytes
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
    void noteOn(std::uint8_t channel, std::span<const std::uint8_t> data);
    void controller(std::uint8_t status, std::span<const std::uint8_t> data);

    MidiNoteReceiver& m_receiver;
};
