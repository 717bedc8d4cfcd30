#pragma once

#include <cstdint>
#include <string>

#include "audiounits/AudioUnitTypes.h"
#include "propertylists/PropertyListValue.h"

// Statuses of MIDI calls.
inline constexpr OSStatus kMIDIInvalidClient = -10830;
inline constexpr OSStatus kMIDIInvalidPort = -10831;
inline constexpr OSStatus kMIDIWrongEndpointType = -10832;
inline constexpr OSStatus kMIDINoConnection = -10833;
inline constexpr OSStatus kMIDIUnknownEndpoint = -10834;
inline constexpr OSStatus kMIDIUnknownProperty = -10835;
inline constexpr OSStatus kMIDIMessageSendErr = -10838;
inline constexpr OSStatus kMIDIObjectNotFound = -10842;
inline constexpr OSStatus kMIDIIDNotUnique = -10843;

/// Clients, ports, endpoints and entities are named by numbers that are never used twice; 0 is
/// none.
using MIDIObjectRef = std::uint32_t;
using MIDIClientRef = MIDIObjectRef;
using MIDIPortRef = MIDIObjectRef;
using MIDIEndpointRef = MIDIObjectRef;
using MIDIEntityRef = MIDIObjectRef;
/// Nanoseconds of the system's monotonic clock; 0 when sending is "now".
using MIDITimeStamp = std::uint64_t;

// Properties of endpoints and entities.
inline constexpr const char* kMIDIPropertyDisplayName = "displayName";  // string
inline constexpr const char* kMIDIPropertyUniqueID = "uniqueID";        // signed 32-bit integer
/// Among an entity's properties if it is a network session.
inline constexpr const char* kMIDIPropertyNetworkSession = "apple.midirtp.session";
using MIDIProperties = PropertyListValue::Dictionary;

#pragma pack(push, 4)
/// One or several messages of the same moment. `data` is `length` bytes long, whatever it says
/// here: longer packets lie in a buffer of the list's owner, whose last one may be cut short.
struct MIDIPacket {
    MIDITimeStamp timeStamp;
    std::uint16_t length;
    std::uint8_t data[256];
};

/// Packets behind one another, each beginning at the end of the one before it, rounded up to a
/// multiple of 4 bytes. See MidiPacketList.h.
struct MIDIPacketList {
    std::uint32_t numPackets;
    MIDIPacket packet[1];
};
#pragma pack(pop)

enum class MIDINotificationMessageID : std::int32_t { objectAdded = 2, objectRemoved = 3 };
enum class MIDIObjectType : std::int32_t { other = -1, source = 2, destination = 3 };

/// What has come or gone.
struct MIDINotification {
    MIDINotificationMessageID messageID;
    MIDIObjectRef child;
    MIDIObjectType childType;
};

/// [main], from the main run loop.
using MIDINotifyProc = void (*)(const MIDINotification& message, void* refCon);
/// [MIDI thread] `readProcRefCon` is the port's, `srcConnRefCon` the connection's. It must be short
/// and make no call to the MIDI services. Never from two threads at once.
using MIDIReadProc = void (*)(const MIDIPacketList& list, void* readProcRefCon,
                              void* srcConnRefCon);
