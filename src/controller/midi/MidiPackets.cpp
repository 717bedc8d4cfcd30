#include "midi/MidiPackets.h"

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
    const auto data = bytes.subspan(1);
    switch (status >> 4) {
        case 8:
            m_receiver.midiNoteUp(data);
            break;
        case 9:
            noteOn(data);
            break;
        case 10:
            m_receiver.midiNoteAftertouch(data);
            break;
        case 15:
            return 1 + handleMidiSystem(status & 0x0F, data);
        default:
            break;
    }
    return 1 + midiDataBytes(status);
}

/// Without its velocity it is neither pressed nor released.
void MidiPackets::noteOn(std::span<const std::uint8_t> data) {
    if (data.size() < 2)
        return;
    if (data[1] != 0)
        m_receiver.midiNoteDown(data);
    else
        m_receiver.midiNoteUp(data);
}

std::size_t MidiPackets::handleMidiSystem(int type, std::span<const std::uint8_t>) {
    if (type == kReset)
        Log::line("Full reset");
    return midiDataBytes(static_cast<std::uint8_t>(0xF0 | type));
}
