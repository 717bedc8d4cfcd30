#include "QrMidiConnection.h"

namespace {

std::string displayName(MIDIEndpointRef endpoint) {
    std::string name;
    const OSStatus status = MIDIObjectGetStringProperty(endpoint, kMIDIPropertyDisplayName, name);
    return status == noErr ? name : "Unknown name";
}

bool belongsToNetworkSession(MIDIEndpointRef endpoint) {
    MIDIEntityRef entity = 0;
    MIDIProperties properties;
    return MIDIEndpointGetEntity(endpoint, entity) == noErr &&
           MIDIObjectGetProperties(entity, properties) == noErr &&
           properties.contains(kMIDIPropertyNetworkSession);
}

}  // namespace

QrMidiConnection::QrMidiConnection(QrMidi& midi, MIDIEndpointRef endpoint)
    : m_midi(midi),
      m_endpoint(endpoint),
      m_name(displayName(endpoint)),
      m_isNetworkSession(belongsToNetworkSession(endpoint)) {}
