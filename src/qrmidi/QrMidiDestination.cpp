#include "QrMidiDestination.h"

#include "OnePacket.h"
#include "QrMidi.h"
#include "QrMidiError.h"

void QrMidiDestination::flushOutput() {
    MIDIFlushOutput(endpoint());
}

void QrMidiDestination::sendBytes(std::span<const std::uint8_t> bytes) {
    const OnePacket packet(bytes, __func__);
    sendPacketList(packet.list());
}

void QrMidiDestination::sendPacketList(const MIDIPacketList& list) {
    logFailure("Sending MIDI", MIDISend(midi().outputPort(), endpoint(), list));
}

void QrMidiVirtualSourceDestination::sendPacketList(const MIDIPacketList& list) {
    logFailure("Sending MIDI", MIDIReceived(midi().virtualSourceEndpoint(), list));
}
