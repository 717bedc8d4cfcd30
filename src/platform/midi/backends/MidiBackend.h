#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "midi/MidiTypes.h"

/// A MIDI port of a device or of another program, as a back end sees it.
struct MidiBackendPort {
    std::string key;  // names the port within the back end, e.g. "seq1:out"
    /// Told apart from an earlier port of the same key: one that went away and came back.
    std::uint64_t instance = 0;
    std::string name;  // for people
    bool isSource = true;
    MIDIProperties entity;  // properties of what it belongs to

    bool operator==(const MidiBackendPort&) const = default;
};

/// Who uses a back end: the MIDI services. It may be told something after the back end was stopped,
/// and lives for ever.
class MidiBackendHost {
  public:
    virtual ~MidiBackendHost() = default;
    /// [any thread but render] All ports that there are now, but for our own.
    virtual void portsChanged(std::size_t backend, std::vector<MidiBackendPort> ports) = 0;
    /// [MIDI thread] What a lane has heard.
    virtual void received(MIDIEndpointRef lane, const MIDIPacketList& list) = 0;
};

/// A way to MIDI ports. Calls only state what is wanted and never wait for a server: the back end
/// makes it so as soon as it can, again after each return of its server. A lane is what runs
/// between one endpoint and this program; the endpoint's number names it. [control], one thread at
/// a time.
class MidiBackend {
  public:
    struct Lane {
        MIDIEndpointRef endpoint = 0;
        bool toUs = true;
        /// The port that it leads to; without one the lane is a port of ours that other programs
        /// connect to as they like, called `name`.
        std::string key;
        std::uint64_t instance = 0;
        std::string name;
    };

    virtual ~MidiBackend() = default;
    /// Whether the system has such ports at all. [any thread but render]
    virtual bool available() const = 0;
    /// Looks for ports from now on. `number` is the back end's own for the host.
    virtual void start(MidiBackendHost& host, std::size_t number) = 0;
    virtual void stop() = 0;
    virtual void open(const Lane& lane) = 0;
    virtual void close(MIDIEndpointRef lane) = 0;
    /// Queues the packets; a status if there is no room.
    virtual OSStatus send(MIDIEndpointRef lane, const MIDIPacketList& list) = 0;
    virtual void flush(MIDIEndpointRef lane) = 0;
};

/// All back ends that the MIDI services use. [control], while no MIDI client lives.
namespace MidiBackends {
using Maker = std::function<std::shared_ptr<MidiBackend>()>;
/// JACK, the ALSA sequencer and the network, unless others were put in their place.
std::vector<Maker> all();
/// Takes the place of all: how a test puts one of its own there. None at all is a system without
/// MIDI.
void use(std::vector<Maker> makers);
}  // namespace MidiBackends
