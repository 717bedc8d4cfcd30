#pragma once

#include "midi/MidiPacketList.h"
#include "midi/MidiTypes.h"

// The system's MIDI, whatever it is made of. [main] but where it says otherwise. Calls never wait
// for a server; statuses tell what was asked wrongly.

/// Whether there is any on this system.
bool MIDIAvailable();

/// The first client makes the services look for ports, the last one to go ends that.
OSStatus MIDIClientCreate(const std::string& name, MIDINotifyProc notify, void* refCon,
                          MIDIClientRef& client);
/// Its ports and virtual endpoints go with it.
OSStatus MIDIClientDispose(MIDIClientRef client);
OSStatus MIDIInputPortCreate(MIDIClientRef client, const std::string& name, MIDIReadProc read,
                             void* refCon, MIDIPortRef& port);
OSStatus MIDIOutputPortCreate(MIDIClientRef client, const std::string& name, MIDIPortRef& port);
OSStatus MIDIPortDispose(MIDIPortRef port);

/// The read callback gets `connection` with each list of this source.
OSStatus MIDIPortConnectSource(MIDIPortRef port, MIDIEndpointRef source, void* connection);
/// When it returns the read callback is not running for this source and will not be called for it.
OSStatus MIDIPortDisconnectSource(MIDIPortRef port, MIDIEndpointRef source);

/// All endpoints of the system, our own virtual ones among them, in the order of their appearance.
std::size_t MIDIGetNumberOfSources();
std::size_t MIDIGetNumberOfDestinations();
/// 0 where there is none.
MIDIEndpointRef MIDIGetSource(std::size_t index);
MIDIEndpointRef MIDIGetDestination(std::size_t index);

OSStatus MIDIObjectGetStringProperty(MIDIObjectRef object, const char* property,
                                     std::string& value);
OSStatus MIDIObjectGetIntegerProperty(MIDIObjectRef object, const char* property,
                                      std::int32_t& value);
/// Unique ids of our own virtual endpoints; kMIDIIDNotUnique for one that is taken, or is 0, which
/// is nobody's.
OSStatus MIDIObjectSetIntegerProperty(MIDIObjectRef object, const char* property,
                                      std::int32_t value);
/// Virtual endpoints have no entity: kMIDIObjectNotFound.
OSStatus MIDIEndpointGetEntity(MIDIEndpointRef endpoint, MIDIEntityRef& entity);
OSStatus MIDIObjectGetProperties(MIDIObjectRef object, MIDIProperties& properties);

/// A source of ours that other programs can listen to.
OSStatus MIDISourceCreate(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source);
/// A destination of ours that other programs can send to.
OSStatus MIDIDestinationCreate(MIDIClientRef client, const std::string& name, MIDIReadProc read,
                               void* refCon, MIDIEndpointRef& destination);
/// When it returns the read callback is not running and will not be called.
OSStatus MIDIEndpointDispose(MIDIEndpointRef endpoint);

/// To a destination, our own virtual one included; kMIDIMessageSendErr if not all was taken.
OSStatus MIDISend(MIDIPortRef port, MIDIEndpointRef destination, const MIDIPacketList& list);
/// From our own virtual source to whoever listens.
OSStatus MIDIReceived(MIDIEndpointRef source, const MIDIPacketList& list);
/// Forgets what was sent and has not gone out.
OSStatus MIDIFlushOutput(MIDIEndpointRef destination);
