#include "QrMidi.h"

#include <algorithm>
#include <limits>

#include "OnePacket.h"
#include "QrMidiError.h"
#include "folders/Folders.h"
#include "log/Log.h"
#include "notifications/NotificationCentre.h"

namespace {

constexpr double kRescanSeconds = 1.0;

template <typename Connections>
auto found(const Connections& connections, MIDIEndpointRef endpoint) {
    return std::ranges::find(connections, endpoint,
                             [](const auto& connection) { return connection->endpoint(); });
}

template <typename Connections>
auto* connectionOf(const Connections& connections, MIDIEndpointRef endpoint) {
    const auto place = found(connections, endpoint);
    return place == connections.end() ? nullptr : place->get();
}

template <typename Get>
std::vector<MIDIEndpointRef> listed(std::size_t count, Get get) {
    std::vector<MIDIEndpointRef> endpoints;
    for (std::size_t i = 0; i < count; ++i) {
        if (const MIDIEndpointRef endpoint = get(i))
            endpoints.push_back(endpoint);
    }
    return endpoints;
}

bool holds(const std::vector<MIDIEndpointRef>& endpoints, MIDIEndpointRef endpoint) {
    return std::ranges::find(endpoints, endpoint) != endpoints.end();
}

}  // namespace

QrMidi::QrMidi(UserDefaults& defaults) : m_defaults(defaults) {
    logFailure("Create MIDI client", MIDIClientCreate(
                                         "QrMidi MIDI Client",
                                         [](const MIDINotification& message, void* self) {
                                             static_cast<QrMidi*>(self)->midiNotify(message);
                                         },
                                         this, m_client));
    logFailure("Create output MIDI port",
               MIDIOutputPortCreate(m_client, "QrMidi Output Port", m_outputPort));
    logFailure("Create input MIDI port",
               MIDIInputPortCreate(m_client, "QrMidi Input Port", read, this, m_inputPort));
    m_rescanTimer = RunLoop::main().callEvery(kRescanSeconds, [this] { scanExistingDevices(); });
}

QrMidi::~QrMidi() {
    RunLoop::main().cancel(m_rescanTimer);
    if (m_outputPort)
        logFailure("Dispose MIDI port", MIDIPortDispose(m_outputPort));
    if (m_inputPort)
        logFailure("Dispose MIDI port", MIDIPortDispose(m_inputPort));
    if (m_client)
        logFailure("Dispose MIDI client", MIDIClientDispose(m_client));
}

void QrMidi::read(const MIDIPacketList& list, void*, void* source) {
    static_cast<QrMidiSource*>(source)->midiRead(list);
}

/// What arrives before the source stands for the endpoint is lost.
void QrMidi::readVirtual(const MIDIPacketList& list, void* self, void*) {
    if (QrMidiSource* const source = static_cast<QrMidi*>(self)->m_virtualReader.load())
        source->midiRead(list);
}

void QrMidi::stopScanning() {
    RunLoop::main().cancel(m_rescanTimer);
    m_rescanTimer = 0;
    scanExistingDevices();
}

void QrMidi::setNetworkEnabled(bool on) {
    MIDINetworkSession& session = MIDINetworkSession::defaultSession();
    session.setEnabled(on);
    session.setConnectionPolicy(MIDINetworkSession::ConnectionPolicy::anyone);
}

std::string QrMidi::virtualName() const {
    return m_virtualEndpointName.value_or(Folders::applicationName());
}

void QrMidi::setVirtualSourceEnabled(bool on) {
    if (on == virtualSourceEnabled())
        return;
    on ? makeVirtualSource() : disposeVirtualSource();
}

void QrMidi::makeVirtualSource() {
    if (!logFailure("Create MIDI virtual source",
                    MIDISourceCreate(m_client, virtualName(), m_virtualSourceEndpoint)))
        return;
    m_virtualSourceDestination =
        std::make_unique<QrMidiVirtualSourceDestination>(*this, m_virtualSourceEndpoint);
    post(kQrMidiDestinationAdded, *m_virtualSourceDestination);
}

void QrMidi::disposeVirtualSource() {
    post(kQrMidiDestinationRemoved, *m_virtualSourceDestination);
    m_virtualSourceDestination.reset();
    logFailure("Dispose MIDI virtual source",
               MIDIEndpointDispose(std::exchange(m_virtualSourceEndpoint, 0)));
}

void QrMidi::setVirtualDestinationEnabled(bool on) {
    if (on == virtualDestinationEnabled())
        return;
    on ? makeVirtualDestination() : disposeVirtualDestination();
}

void QrMidi::makeVirtualDestination() {
    if (!logFailure("Create MIDI virtual destination",
                    MIDIDestinationCreate(m_client, virtualName(), readVirtual, this,
                                          m_virtualDestinationEndpoint)))
        return;
    keepVirtualDestinationID();
    m_virtualDestinationSource =
        std::make_unique<QrMidiSource>(*this, m_virtualDestinationEndpoint);
    m_virtualReader = m_virtualDestinationSource.get();
    post(kQrMidiSourceAdded, *m_virtualDestinationSource);
}

/// An id that was never saved is 0, which is refused like one that is taken.
void QrMidi::keepVirtualDestinationID() {
    const std::int64_t saved = m_defaults.integer(kQrMidiSavedIDKey).value_or(0);
    using Limits = std::numeric_limits<std::int32_t>;
    const bool fits = saved >= Limits::min() && saved <= Limits::max();
    const OSStatus status =
        MIDIObjectSetIntegerProperty(m_virtualDestinationEndpoint, kMIDIPropertyUniqueID,
                                     fits ? static_cast<std::int32_t>(saved) : 0);
    if (status != kMIDIIDNotUnique) {
        logFailure("Set MIDI virtual destination ID", status);
        return;
    }
    std::int32_t assigned = 0;
    if (logFailure("Get MIDI virtual destination ID",
                   MIDIObjectGetIntegerProperty(m_virtualDestinationEndpoint, kMIDIPropertyUniqueID,
                                                assigned)))
        m_defaults.set(kQrMidiSavedIDKey, assigned);
}

/// The endpoint goes before the source that its packets are read with.
void QrMidi::disposeVirtualDestination() {
    logFailure("Dispose MIDI virtual destination",
               MIDIEndpointDispose(std::exchange(m_virtualDestinationEndpoint, 0)));
    m_virtualReader = nullptr;
    post(kQrMidiSourceRemoved, *m_virtualDestinationSource);
    m_virtualDestinationSource.reset();
}

void QrMidi::post(const char* name, QrMidiConnection& connection) {
    NotificationCentre::defaultCentre().post(Notice{name, this, kQrMidiConnectionKey, &connection});
}

QrMidiSource* QrMidi::getSource(MIDIEndpointRef endpoint) const {
    return connectionOf(m_sources, endpoint);
}

QrMidiDestination* QrMidi::getDestination(MIDIEndpointRef endpoint) const {
    return connectionOf(m_destinations, endpoint);
}

/// A look may have met the endpoint before its notice came.
void QrMidi::connectSource(MIDIEndpointRef endpoint) {
    if (getSource(endpoint))
        return;
    const auto source = std::make_shared<QrMidiSource>(*this, endpoint);
    m_sources.push_back(source);
    if (m_delegate)
        m_delegate->sourceAdded(*this, *source);
    post(kQrMidiSourceAdded, *source);
    logFailure("Connecting to MIDI source",
               MIDIPortConnectSource(m_inputPort, endpoint, source.get()));
}

void QrMidi::disconnectSource(MIDIEndpointRef endpoint) {
    const auto place = found(m_sources, endpoint);
    if (place == m_sources.end())
        return;
    const auto source = *place;
    logFailure("Disconnecting from MIDI source", MIDIPortDisconnectSource(m_inputPort, endpoint));
    m_sources.erase(place);
    if (m_delegate)
        m_delegate->sourceRemoved(*this, *source);
    post(kQrMidiSourceRemoved, *source);
}

void QrMidi::connectDestination(MIDIEndpointRef endpoint) {
    if (getDestination(endpoint))
        return;
    const auto destination = std::make_shared<QrMidiDestination>(*this, endpoint);
    m_destinations.push_back(destination);
    if (m_delegate)
        m_delegate->destinationAdded(*this, *destination);
    post(kQrMidiDestinationAdded, *destination);
}

void QrMidi::disconnectDestination(MIDIEndpointRef endpoint) {
    const auto place = found(m_destinations, endpoint);
    if (place == m_destinations.end())
        return;
    const auto destination = *place;
    m_destinations.erase(place);
    if (m_delegate)
        m_delegate->destinationRemoved(*this, *destination);
    post(kQrMidiDestinationRemoved, *destination);
}

bool QrMidi::isOwn(MIDIEndpointRef endpoint) const {
    return endpoint == m_virtualSourceEndpoint || endpoint == m_virtualDestinationEndpoint;
}

void QrMidi::midiNotify(const MIDINotification& message) {
    if (message.messageID == MIDINotificationMessageID::objectAdded)
        midiNotifyAdd(message);
    else if (message.messageID == MIDINotificationMessageID::objectRemoved)
        midiNotifyRemove(message);
}

void QrMidi::midiNotifyAdd(const MIDINotification& message) {
    if (isOwn(message.child))
        return;
    if (message.childType == MIDIObjectType::source)
        connectSource(message.child);
    else if (message.childType == MIDIObjectType::destination)
        connectDestination(message.child);
}

void QrMidi::midiNotifyRemove(const MIDINotification& message) {
    if (isOwn(message.child))
        return;
    if (message.childType == MIDIObjectType::source)
        disconnectSource(message.child);
    else if (message.childType == MIDIObjectType::destination)
        disconnectDestination(message.child);
}

/// Our own virtual endpoints have their connections already.
void QrMidi::scanExistingDevices() {
    const auto knownSources = m_sources;
    const auto knownDestinations = m_destinations;
    const auto sources = listed(MIDIGetNumberOfSources(), MIDIGetSource);
    const auto destinations = listed(MIDIGetNumberOfDestinations(), MIDIGetDestination);
    for (const MIDIEndpointRef endpoint : sources) {
        if (!isOwn(endpoint) && found(knownSources, endpoint) == knownSources.end())
            connectSource(endpoint);
    }
    for (const MIDIEndpointRef endpoint : destinations) {
        if (!isOwn(endpoint) && found(knownDestinations, endpoint) == knownDestinations.end())
            connectDestination(endpoint);
    }
    for (const auto& source : knownSources) {
        if (!holds(sources, source->endpoint()))
            disconnectSource(source->endpoint());
    }
    for (const auto& destination : knownDestinations) {
        if (!holds(destinations, destination->endpoint()))
            disconnectDestination(destination->endpoint());
    }
}

void QrMidi::sendPacketList(const MIDIPacketList& list) {
    for (const MIDIEndpointRef endpoint : listed(MIDIGetNumberOfDestinations(), MIDIGetDestination))
        logFailure("Sending MIDI", MIDISend(m_outputPort, endpoint, list));
}

void QrMidi::sendBytes(std::span<const std::uint8_t> bytes) {
    Log::line("%s(%u bytes to core MIDI)", __func__, static_cast<unsigned>(bytes.size()));
    const OnePacket packet(bytes, __func__);
    sendPacketList(packet.list());
}
