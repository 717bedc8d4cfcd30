#include "midi/MidiServices.h"

#include <cstring>

#include "midi/MidiSystem.h"

namespace {

MidiSystem& midi() {
    return MidiSystem::shared();
}

MIDIEndpointRef at(MIDIObjectType type, std::size_t index) {
    const auto all = midi().endpoints(type);
    return index < all.size() ? all[index] : 0;
}

}  // namespace

bool MIDIAvailable() {
    return midi().available();
}

OSStatus MIDIClientCreate(const std::string&, MIDINotifyProc notify, void* refCon,
                          MIDIClientRef& client) {
    client = midi().addClient(notify, refCon);
    return noErr;
}

OSStatus MIDIClientDispose(MIDIClientRef client) {
    return midi().removeClient(client);
}

OSStatus MIDIInputPortCreate(MIDIClientRef client, const std::string&, MIDIReadProc read,
                             void* refCon, MIDIPortRef& port) {
    return read ? midi().addPort(client, read, refCon, port) : kAudio_ParamError;
}

OSStatus MIDIOutputPortCreate(MIDIClientRef client, const std::string&, MIDIPortRef& port) {
    return midi().addPort(client, nullptr, nullptr, port);
}

OSStatus MIDIPortDispose(MIDIPortRef port) {
    return midi().removePort(port);
}

OSStatus MIDIPortConnectSource(MIDIPortRef port, MIDIEndpointRef source, void* connection) {
    return midi().connect(port, source, connection);
}

OSStatus MIDIPortDisconnectSource(MIDIPortRef port, MIDIEndpointRef source) {
    return midi().disconnect(port, source);
}

std::size_t MIDIGetNumberOfSources() {
    return midi().endpoints(MIDIObjectType::source).size();
}

std::size_t MIDIGetNumberOfDestinations() {
    return midi().endpoints(MIDIObjectType::destination).size();
}

MIDIEndpointRef MIDIGetSource(std::size_t index) {
    return at(MIDIObjectType::source, index);
}

MIDIEndpointRef MIDIGetDestination(std::size_t index) {
    return at(MIDIObjectType::destination, index);
}

OSStatus MIDIObjectGetStringProperty(MIDIObjectRef object, const char* property,
                                     std::string& value) {
    const auto endpoint = midi().endpoint(object);
    if (!endpoint)
        return kMIDIObjectNotFound;
    if (std::strcmp(property, kMIDIPropertyDisplayName) != 0 || endpoint->name.empty())
        return kMIDIUnknownProperty;
    value = endpoint->name;
    return noErr;
}

OSStatus MIDIObjectGetIntegerProperty(MIDIObjectRef object, const char* property,
                                      std::int32_t& value) {
    const auto endpoint = midi().endpoint(object);
    if (!endpoint)
        return kMIDIObjectNotFound;
    if (std::strcmp(property, kMIDIPropertyUniqueID) != 0)
        return kMIDIUnknownProperty;
    value = endpoint->uniqueID;
    return noErr;
}

OSStatus MIDIObjectSetIntegerProperty(MIDIObjectRef object, const char* property,
                                      std::int32_t value) {
    if (std::strcmp(property, kMIDIPropertyUniqueID) != 0)
        return kMIDIUnknownProperty;
    return midi().setUniqueID(object, value);
}

OSStatus MIDIEndpointGetEntity(MIDIEndpointRef endpoint, MIDIEntityRef& entity) {
    const auto found = midi().endpoint(endpoint);
    if (!found || found->entity == 0)
        return kMIDIObjectNotFound;
    entity = found->entity;
    return noErr;
}

OSStatus MIDIObjectGetProperties(MIDIObjectRef object, MIDIProperties& properties) {
    if (const auto found = midi().endpoint(object)) {
        properties = {{kMIDIPropertyDisplayName, found->name},
                      {kMIDIPropertyUniqueID, found->uniqueID}};
        return noErr;
    }
    const auto found = object ? midi().endpointOfEntity(object) : std::nullopt;
    if (!found)
        return kMIDIObjectNotFound;
    properties = found->port.entity;
    return noErr;
}

OSStatus MIDISourceCreate(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) {
    return midi().addVirtual(client, MIDIObjectType::source, name, nullptr, nullptr, source);
}

OSStatus MIDIDestinationCreate(MIDIClientRef client, const std::string& name, MIDIReadProc read,
                               void* refCon, MIDIEndpointRef& destination) {
    if (!read)
        return kAudio_ParamError;
    return midi().addVirtual(client, MIDIObjectType::destination, name, read, refCon, destination);
}

OSStatus MIDIEndpointDispose(MIDIEndpointRef endpoint) {
    return midi().removeVirtual(endpoint);
}

OSStatus MIDISend(MIDIPortRef port, MIDIEndpointRef destination, const MIDIPacketList& list) {
    return midi().send(port, destination, list);
}

OSStatus MIDIReceived(MIDIEndpointRef source, const MIDIPacketList& list) {
    return midi().receivedFrom(source, list);
}

OSStatus MIDIFlushOutput(MIDIEndpointRef destination) {
    return midi().flush(destination);
}
