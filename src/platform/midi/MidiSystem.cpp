#include "midi/MidiSystem.h"

#include <algorithm>

#include "runloop/RunLoop.h"

namespace {

// FNV-1a, Fowler, Noll and Vo 1991: the same text gives the same id at every start.
std::uint32_t hashOf(const std::string& text) {
    std::uint32_t hash = 2166136261u;
    for (const char letter : text)
        hash = (hash ^ static_cast<std::uint8_t>(letter)) * 16777619u;
    return hash;
}

}  // namespace

MidiSystem& MidiSystem::shared() {
    // Never destroyed: a thread of a back end whose server hangs may still tell something.
    static auto* const system = new MidiSystem;
    return *system;
}

bool MidiSystem::available() {
    return std::ranges::any_of(MidiBackends::all(),
                               [](const auto& make) { return make()->available(); });
}

MIDIClientRef MidiSystem::addClient(MIDINotifyProc callback, void* refCon) {
    MIDIClientRef client;
    bool first;
    {
        std::lock_guard guard(m_mutex);
        client = ++m_lastRef;
        first = m_clients.empty();
        m_clients[client] = {callback, refCon};
    }
    if (first)
        startBackends();
    return client;
}

OSStatus MidiSystem::removeClient(MIDIClientRef client) {
    std::vector<MIDIObjectRef> ports, virtuals;
    {
        std::lock_guard guard(m_mutex);
        if (m_clients.erase(client) == 0)
            return kMIDIInvalidClient;
        for (const auto& [ref, port] : m_ports) {
            if (port.client == client)
                ports.push_back(ref);
        }
        for (const Endpoint& endpoint : m_endpoints) {
            if (endpoint.owner == client)
                virtuals.push_back(endpoint.ref);
        }
    }
    std::ranges::for_each(ports, [this](auto ref) { removePort(ref); });
    std::ranges::for_each(virtuals, [this](auto ref) { removeVirtual(ref); });
    stopBackends();
    return noErr;
}

/// Back ends are started and stopped outside the mutex: they may tell something meanwhile.
void MidiSystem::startBackends() {
    std::vector<std::shared_ptr<MidiBackend>> started;
    for (const MidiBackends::Maker& make : MidiBackends::all())
        started.push_back(make());
    std::unique_lock held(m_mutex);
    m_backends = started;
    held.unlock();
    for (std::size_t i = 0; i < started.size(); ++i)
        started[i]->start(*this, m_firstBackend + i);
}

void MidiSystem::stopBackends() {
    std::vector<std::shared_ptr<MidiBackend>> stopped;
    {
        std::lock_guard guard(m_mutex);
        if (!m_clients.empty())
            return;
        std::swap(stopped, m_backends);
        m_firstBackend += stopped.size();
        m_endpoints.clear();
    }
    for (const auto& backend : stopped)
        backend->stop();
}

OSStatus MidiSystem::addPort(MIDIClientRef client, MIDIReadProc read, void* refCon,
                             MIDIPortRef& port) {
    std::lock_guard guard(m_mutex);
    if (!m_clients.contains(client))
        return kMIDIInvalidClient;
    port = ++m_lastRef;
    m_ports[port] = {client, read, refCon};
    return noErr;
}

OSStatus MidiSystem::removePort(MIDIPortRef port) {
    std::lock_guard guard(m_mutex);
    if (m_ports.erase(port) == 0)
        return kMIDIInvalidPort;
    removeRoutes([port](const Route& route) { return route.port == port; });
    for (const Endpoint& endpoint : m_endpoints) {
        if (!endpoint.isVirtual() && !isRouted(endpoint.ref) && !endpoint.sending)
            m_backends[endpoint.backend - m_firstBackend]->close(endpoint.ref);
    }
    return noErr;
}

OSStatus MidiSystem::connect(MIDIPortRef port, MIDIEndpointRef source, void* connection) {
    std::lock_guard guard(m_mutex);
    const auto found = m_ports.find(port);
    if (found == m_ports.end() || !found->second.read)
        return kMIDIInvalidPort;
    const Endpoint* const endpoint = find(source);
    if (!endpoint)
        return kMIDIUnknownEndpoint;
    if (endpoint->type != MIDIObjectType::source)
        return kMIDIWrongEndpointType;
    {
        std::lock_guard routes(m_routesMutex);
        m_routes.push_back({source, port, found->second.read, found->second.refCon, connection});
    }
    if (!endpoint->isVirtual())
        m_backends[endpoint->backend - m_firstBackend]->open(
            {source, true, endpoint->port.key, endpoint->port.instance, endpoint->name});
    return noErr;
}

/// A route stays when its source goes, until it is taken out here: what had arrived is still heard.
OSStatus MidiSystem::disconnect(MIDIPortRef port, MIDIEndpointRef source) {
    std::lock_guard guard(m_mutex);
    const std::size_t removed = removeRoutes(
        [&](const Route& route) { return route.port == port && route.lane == source; });
    const Endpoint* const endpoint = find(source);
    if (endpoint && !endpoint->isVirtual() && !isRouted(source))
        m_backends[endpoint->backend - m_firstBackend]->close(source);
    if (removed > 0)
        return noErr;
    return endpoint ? kMIDINoConnection : kMIDIUnknownEndpoint;
}

std::size_t MidiSystem::removeRoutes(const std::function<bool(const Route&)>& which) {
    std::lock_guard routes(m_routesMutex);
    return std::erase_if(m_routes, which);
}

bool MidiSystem::isRouted(MIDIEndpointRef lane) {
    std::lock_guard routes(m_routesMutex);
    return std::ranges::find(m_routes, lane, &Route::lane) != m_routes.end();
}

OSStatus MidiSystem::addVirtual(MIDIClientRef client, MIDIObjectType type, const std::string& name,
                                MIDIReadProc read, void* refCon, MIDIEndpointRef& endpoint) {
    std::lock_guard guard(m_mutex);
    if (!m_clients.contains(client))
        return kMIDIInvalidClient;
    const bool toUs = type == MIDIObjectType::destination;
    Endpoint made;
    made.ref = ++m_lastRef;
    made.type = type;
    made.name = name;
    made.uniqueID = freeID((toUs ? "to " : "from ") + name);
    made.owner = client;
    endpoint = made.ref;
    if (toUs) {
        std::lock_guard routes(m_routesMutex);
        m_routes.push_back({made.ref, 0, read, refCon, nullptr});
    }
    m_endpoints.push_back(made);
    for (const auto& backend : m_backends)
        backend->open({made.ref, toUs, "", 0, name});
    post(MIDINotificationMessageID::objectAdded, made);
    return noErr;
}

OSStatus MidiSystem::removeVirtual(MIDIEndpointRef ref) {
    std::lock_guard guard(m_mutex);
    const auto found = std::ranges::find(m_endpoints, ref, &Endpoint::ref);
    if (found == m_endpoints.end() || !found->isVirtual())
        return kMIDIUnknownEndpoint;
    removeRoutes([ref](const Route& route) { return route.lane == ref; });
    for (const auto& backend : m_backends)
        backend->close(ref);
    const Endpoint gone = *found;
    m_endpoints.erase(found);
    post(MIDINotificationMessageID::objectRemoved, gone);
    return noErr;
}

OSStatus MidiSystem::setUniqueID(MIDIObjectRef ref, std::int32_t id) {
    std::lock_guard guard(m_mutex);
    Endpoint* const endpoint = find(ref);
    if (!endpoint || !endpoint->isVirtual())
        return kMIDIObjectNotFound;
    if (endpoint->uniqueID == id)
        return noErr;
    if (!isFree(id))
        return kMIDIIDNotUnique;
    endpoint->uniqueID = id;
    return noErr;
}

bool MidiSystem::isFree(std::int32_t id) const {
    return id != 0 && std::ranges::find(m_endpoints, id, &Endpoint::uniqueID) == m_endpoints.end();
}

std::int32_t MidiSystem::freeID(const std::string& text) const {
    std::uint32_t id = hashOf(text);
    while (!isFree(static_cast<std::int32_t>(id)))
        ++id;
    return static_cast<std::int32_t>(id);
}

OSStatus MidiSystem::send(MIDIPortRef port, MIDIEndpointRef destination,
                          const MIDIPacketList& list) {
    std::unique_lock guard(m_mutex);
    const auto found = m_ports.find(port);
    if (found == m_ports.end() || found->second.read)
        return kMIDIInvalidPort;
    Endpoint* const endpoint = find(destination);
    if (!endpoint)
        return kMIDIUnknownEndpoint;
    if (endpoint->type != MIDIObjectType::destination)
        return kMIDIWrongEndpointType;
    if (endpoint->isVirtual()) {
        guard.unlock();
        received(destination, list);
        return noErr;
    }
    MidiBackend& backend = *m_backends[endpoint->backend - m_firstBackend];
    if (!std::exchange(endpoint->sending, true))
        backend.open(
            {destination, false, endpoint->port.key, endpoint->port.instance, endpoint->name});
    return backend.send(destination, list);
}

OSStatus MidiSystem::receivedFrom(MIDIEndpointRef source, const MIDIPacketList& list) {
    OSStatus status = noErr;
    {
        std::lock_guard guard(m_mutex);
        const Endpoint* const endpoint = find(source);
        if (!endpoint || !endpoint->isVirtual() || endpoint->type != MIDIObjectType::source)
            return kMIDIUnknownEndpoint;
        for (const auto& backend : m_backends) {
            if (const OSStatus failed = backend->send(source, list))
                status = failed;
        }
    }
    received(source, list);
    return status;
}

OSStatus MidiSystem::flush(MIDIEndpointRef destination) {
    std::lock_guard guard(m_mutex);
    const Endpoint* const endpoint = find(destination);
    if (!endpoint)
        return kMIDIUnknownEndpoint;
    if (endpoint->sending)
        m_backends[endpoint->backend - m_firstBackend]->flush(destination);
    return noErr;
}

std::vector<MIDIEndpointRef> MidiSystem::endpoints(MIDIObjectType type) const {
    std::lock_guard guard(m_mutex);
    std::vector<MIDIEndpointRef> found;
    for (const Endpoint& endpoint : m_endpoints) {
        if (endpoint.type == type)
            found.push_back(endpoint.ref);
    }
    return found;
}

std::optional<MidiSystem::Endpoint> MidiSystem::endpoint(MIDIEndpointRef ref) const {
    std::lock_guard guard(m_mutex);
    const auto found = std::ranges::find(m_endpoints, ref, &Endpoint::ref);
    return found == m_endpoints.end() ? std::nullopt : std::optional(*found);
}

std::optional<MidiSystem::Endpoint> MidiSystem::endpointOfEntity(MIDIEntityRef entity) const {
    std::lock_guard guard(m_mutex);
    const auto found = std::ranges::find(m_endpoints, entity, &Endpoint::entity);
    return found == m_endpoints.end() ? std::nullopt : std::optional(*found);
}

MidiSystem::Endpoint* MidiSystem::find(MIDIEndpointRef ref) {
    const auto found = std::ranges::find(m_endpoints, ref, &Endpoint::ref);
    return found == m_endpoints.end() ? nullptr : &*found;
}

void MidiSystem::portsChanged(std::size_t backend, std::vector<MidiBackendPort> ports) {
    std::lock_guard guard(m_mutex);
    if (backend < m_firstBackend || backend >= m_firstBackend + m_backends.size())
        return;
    const std::vector<Endpoint> before = m_endpoints;
    for (const Endpoint& endpoint : before) {
        if (!endpoint.isVirtual() && endpoint.backend == backend &&
            std::ranges::find(ports, endpoint.port) == ports.end())
            vanish(endpoint);
    }
    for (MidiBackendPort& port : ports) {
        const auto known = std::ranges::find_if(before, [&](const Endpoint& endpoint) {
            return !endpoint.isVirtual() && endpoint.backend == backend && endpoint.port == port;
        });
        if (known == before.end())
            appear(backend, std::move(port));
    }
}

void MidiSystem::appear(std::size_t backend, MidiBackendPort port) {
    Endpoint made;
    made.ref = ++m_lastRef;
    made.entity = ++m_lastRef;
    made.type = port.isSource ? MIDIObjectType::source : MIDIObjectType::destination;
    made.name = port.name;
    made.uniqueID = freeID((port.isSource ? "source " : "destination ") + port.key);
    made.backend = backend;
    made.port = std::move(port);
    m_endpoints.push_back(made);
    post(MIDINotificationMessageID::objectAdded, made);
}

void MidiSystem::vanish(const Endpoint& endpoint) {
    m_backends[endpoint.backend - m_firstBackend]->close(endpoint.ref);
    std::erase_if(m_endpoints, [&](const Endpoint& other) { return other.ref == endpoint.ref; });
    post(MIDINotificationMessageID::objectRemoved, endpoint);
}

void MidiSystem::post(MIDINotificationMessageID message, const Endpoint& endpoint) {
    for (const auto& [client, record] : m_clients) {
        RunLoop::main().callAfter(
            0, [this, client = client,
                notification = MIDINotification{message, endpoint.ref, endpoint.type}] {
                notify(client, notification);
            });
    }
}

/// A client that has gone is told nothing, and nobody is told of what has come and gone again.
void MidiSystem::notify(MIDIClientRef client, const MIDINotification& notification) {
    Client record;
    {
        std::lock_guard guard(m_mutex);
        const auto found = m_clients.find(client);
        const bool late = notification.messageID == MIDINotificationMessageID::objectAdded &&
                          !find(notification.child);
        if (found == m_clients.end() || !found->second.notify || late)
            return;
        record = found->second;
    }
    record.notify(notification, record.refCon);
}

void MidiSystem::received(MIDIEndpointRef lane, const MIDIPacketList& list) {
    std::lock_guard guard(m_routesMutex);
    for (const Route& route : m_routes) {
        if (route.lane == lane)
            route.read(list, route.refCon, route.connection);
    }
}
