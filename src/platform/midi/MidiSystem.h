#pragma once

#include <map>
#include <mutex>
#include <optional>

#include "midi/MidiServices.h"
#include "midi/backends/MidiBackend.h"

/// What the MIDI services know: clients, ports, endpoints of all back ends, and who hears what. The
/// tables belong to m_mutex; m_routes, with its callbacks, to m_routesMutex, which the MIDI threads
/// hold while they call: whoever takes a route out knows that its callback is not running. A thread
/// that needs both takes m_mutex first.
class MidiSystem final : private MidiBackendHost {
  public:
    static MidiSystem& shared();

    struct Endpoint {
        MIDIEndpointRef ref = 0;
        MIDIObjectType type = MIDIObjectType::source;
        std::string name;
        std::int32_t uniqueID = 0;
        MIDIClientRef owner = 0;   // of a virtual one; else 0
        std::size_t backend = 0;   // of one that is not virtual
        MidiBackendPort port;      // of one that is not virtual
        MIDIEntityRef entity = 0;  // of one that is not virtual
        bool sending = false;      // a lane to it is open
        bool isVirtual() const { return owner != 0; }
    };

    bool available();
    MIDIClientRef addClient(MIDINotifyProc callback, void* refCon);
    OSStatus removeClient(MIDIClientRef client);
    OSStatus addPort(MIDIClientRef client, MIDIReadProc read, void* refCon, MIDIPortRef& port);
    OSStatus removePort(MIDIPortRef port);
    OSStatus connect(MIDIPortRef port, MIDIEndpointRef source, void* connection);
    OSStatus disconnect(MIDIPortRef port, MIDIEndpointRef source);
    OSStatus addVirtual(MIDIClientRef client, MIDIObjectType type, const std::string& name,
                        MIDIReadProc read, void* refCon, MIDIEndpointRef& endpoint);
    OSStatus removeVirtual(MIDIEndpointRef endpoint);
    OSStatus setUniqueID(MIDIObjectRef endpoint, std::int32_t id);
    OSStatus send(MIDIPortRef port, MIDIEndpointRef destination, const MIDIPacketList& list);
    OSStatus receivedFrom(MIDIEndpointRef source, const MIDIPacketList& list);
    OSStatus flush(MIDIEndpointRef destination);

    /// The endpoints of a kind, in the order of their appearance.
    std::vector<MIDIEndpointRef> endpoints(MIDIObjectType type) const;
    /// By the number of the endpoint itself.
    std::optional<Endpoint> endpoint(MIDIEndpointRef ref) const;
    /// By the number of its entity.
    std::optional<Endpoint> endpointOfEntity(MIDIEntityRef entity) const;

  private:
    struct Client {
        MIDINotifyProc notify;
        void* refCon;
    };
    struct Port {
        MIDIClientRef client;
        MIDIReadProc read;  // null: an output port
        void* refCon;
    };
    struct Route {
        MIDIEndpointRef lane;
        MIDIPortRef port;  // 0: a virtual destination
        MIDIReadProc read;
        void* refCon;
        void* connection;
    };

    void portsChanged(std::size_t backend, std::vector<MidiBackendPort> ports) override;
    void received(MIDIEndpointRef lane, const MIDIPacketList& list) override;

    void startBackends();
    void stopBackends();
    void appear(std::size_t backend, MidiBackendPort port);
    void vanish(const Endpoint& endpoint);
    void post(MIDINotificationMessageID message, const Endpoint& endpoint);
    void notify(MIDIClientRef client, const MIDINotification& notification);
    std::int32_t freeID(const std::string& text) const;
    bool isFree(std::int32_t id) const;
    Endpoint* find(MIDIEndpointRef ref);
    std::size_t removeRoutes(const std::function<bool(const Route&)>& which);
    bool isRouted(MIDIEndpointRef lane);

    mutable std::mutex m_mutex;
    std::vector<std::shared_ptr<MidiBackend>> m_backends;  // numbered from m_firstBackend
    std::size_t m_firstBackend = 1;
    MIDIObjectRef m_lastRef = 0;
    std::map<MIDIClientRef, Client> m_clients;
    std::map<MIDIPortRef, Port> m_ports;
    std::vector<Endpoint> m_endpoints;

    std::mutex m_routesMutex;
    std::vector<Route> m_routes;
};
