#include "midi/MidiPackets.h"

#include <algorithm>

#include "log/Log.h"
#include "midi/MidiMessages.h"
#include "midi/MidiPacketList.h"

namespace {
constexpr int kReset = 15;
}

void MidiPackets::handlePacketList(const MIDIPacketList& list) {
    const MIDIPacket* packet = list.packet;
    for (std::uint32_t left = list.numPackets; left > 0; --left, packet = MIDIPacketNext(packet))
        handleMidiPacket(MIDIPacketData(*packet));
}

void MidiPackets::handleMidiPacket(std::span<const std::uint8_t> packet) {
    std::size_t at = 0;
    while (at < packet.size())
        at += handleMidiMessage(packet.subspan(at));
}

std::size_t MidiPackets::handleMidiMessage(std::span<const std::uint8_t> bytes) {
    const std::uint8_t status = bytes[0];
    const auto channel = static_cast<std::uint8_t>(status & 0x0F);
    const auto data = bytes.subspan(1);
    switch (status >> 4) {
        case 8:
            m_receiver.midiNoteUp(channel, data);
            break;
        case 9:
            noteOn(channel, data);
            break;
        case 10:
            m_receiver.midiNoteAftertouch(channel, data);
            break;
        case 15:
            return 1 + handleMidiSystem(channel, data);
        default:
            controller(status, data);
            break;
    }
    return 1 + midiDataBytes(status);
}

/// Without its velocity it is neither pressed nor released.
void MidiPackets::noteOn(std::uint8_t channel, std::span<const std::uint8_t> data) {
    if (data.size() < 2)
        return;
    if (data[1] != 0)
        m_receiver.midiNoteDown(channel, data);
    else
        m_receiver.midiNoteUp(channel, data);
}

/// A damaged one must not move what the player has set.
void MidiPackets::controller(std::uint8_t status, std::span<const std::uint8_t> data) {
    const std::size_t length = midiDataBytes(status);
    if (data.size() < length ||
        std::ranges::any_of(data.first(length), [](std::uint8_t byte) { return byte >= 0x80; }))
        return;
    const auto channel = static_cast<std::uint8_t>(status & 0x0F);
    switch (status >> 4) {
        case 11:
            return m_receiver.midiControlChange(channel, data[0], data[1]);
        case 12:
            return m_receiver.midiProgramChange(channel, data[0]);
        case 13:
            return m_receiver.midiChannelPressure(channel, data[0]);
        case 14:
            return m_receiver.midiPitchBend(channel, data[0], data[1]);
        default:
            return;
    }
}

std::size_t MidiPackets::handleMidiSystem(int type, std::span<const std::uint8_t>) {
    if (type == kReset)
        Log::line("Full reset");
    return midiDataBytes(static_cast<std::uint8_t>(0xF0 | type));
}
