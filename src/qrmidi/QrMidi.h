#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "QrMidiDestination.h"
#include "QrMidiSource.h"
#include "defaults/UserDefaults.h"
#include "midi/MidiNetworkSession.h"
#include "runloop/RunLoop.h"

/// Who is told which endpoints come and go; our own virtual ones are not among them. [main]
class QrMidiDelegate {
  public:
    virtual ~QrMidiDelegate() = default;
    virtual void sourceAdded(QrMidi& /*midi*/, QrMidiSource& /*source*/) {}
    virtual void sourceRemoved(QrMidi& /*midi*/, QrMidiSource& /*source*/) {}
    virtual void destinationAdded(QrMidi& /*midi*/, QrMidiDestination& /*destination*/) {}
    virtual void destinationRemoved(QrMidi& /*midi*/, QrMidiDestination& /*destination*/) {}
};

// Posted with the hub as object and the connection under "connection".
inline constexpr const char* kQrMidiSourceAdded = "QrMidiSourceAddedNotification";
inline constexpr const char* kQrMidiSourceRemoved = "QrMidiSourceRemovedNotification";
inline constexpr const char* kQrMidiDestinationAdded = "QrMidiDestinationAddedNotification";
inline constexpr const char* kQrMidiDestinationRemoved = "QrMidiDestinationRemovedNotification";
inline constexpr const char* kQrMidiConnectionKey = "connection";

/// The unique id of the virtual destination, so that others know it again at the next start.
inline constexpr const char* kQrMidiSavedIDKey = "QRMIDI Saved Virtual Destination ID";

/// A live list of all MIDI sources and destinations; every source is connected, and heard by its
/// listeners. Failed calls are logged, and the hub goes on. [main]
class QrMidi {
  public:
    /// Whether this system has MIDI.
    static bool midiAvailable() { return MIDIAvailable(); }

    /// `defaults` keep the id of the virtual destination and outlive the hub.
    explicit QrMidi(UserDefaults& defaults);
    /// No listener is told anything after it.
    ~QrMidi();
    QrMidi(const QrMidi&) = delete;
    QrMidi& operator=(const QrMidi&) = delete;

    MIDIClientRef client() const { return m_client; }
    MIDIPortRef outputPort() const { return m_outputPort; }
    MIDIPortRef inputPort() const { return m_inputPort; }

    /// Not retained.
    QrMidiDelegate* delegate() const { return m_delegate; }
    void setDelegate(QrMidiDelegate* delegate) { m_delegate = delegate; }

    /// Of our virtual endpoints; nothing is the name of the application.
    const std::optional<std::string>& virtualEndpointName() const { return m_virtualEndpointName; }
    void setVirtualEndpointName(std::optional<std::string> name) {
        m_virtualEndpointName = std::move(name);
    }

    /// A source of ours that other programs can hear.
    bool virtualSourceEnabled() const { return m_virtualSourceEndpoint != 0; }
    void setVirtualSourceEnabled(bool on);
    MIDIEndpointRef virtualSourceEndpoint() const { return m_virtualSourceEndpoint; }
    QrMidiDestination* virtualSourceDestination() const { return m_virtualSourceDestination.get(); }

    /// A destination of ours that other programs can send to.
    bool virtualDestinationEnabled() const { return m_virtualDestinationEndpoint != 0; }
    void setVirtualDestinationEnabled(bool on);
    MIDIEndpointRef virtualDestinationEndpoint() const { return m_virtualDestinationEndpoint; }
    QrMidiSource* virtualDestinationSource() const { return m_virtualDestinationSource.get(); }

    /// Of the system's session over the network; any host may connect.
    bool networkEnabled() const { return MIDINetworkSession::defaultSession().isEnabled(); }
    void setNetworkEnabled(bool on);

    const std::vector<std::shared_ptr<QrMidiSource>>& sources() const { return m_sources; }
    const std::vector<std::shared_ptr<QrMidiDestination>>& destinations() const {
        return m_destinations;
    }
    /// The connection with that endpoint, or null.
    QrMidiSource* getSource(MIDIEndpointRef endpoint) const;
    QrMidiDestination* getDestination(MIDIEndpointRef endpoint) const;
    std::size_t numberOfConnections() const { return m_sources.size() + m_destinations.size(); }

    /// To every destination of the system.
    void sendPacketList(const MIDIPacketList& list);
    /// As one packet, now. 65536 bytes or more stop the program.
    void sendBytes(std::span<const std::uint8_t> bytes);

    /// Ends the looks of every second, with one more.
    void stopScanning();
    /// Compares what is connected with what there is, for devices whose notice was missed.
    void scanExistingDevices();

    void connectSource(MIDIEndpointRef endpoint);
    void disconnectSource(MIDIEndpointRef endpoint);
    void connectDestination(MIDIEndpointRef endpoint);
    void disconnectDestination(MIDIEndpointRef endpoint);
    void midiNotify(const MIDINotification& message);

  private:
    static void read(const MIDIPacketList& list, void*, void* source);
    static void readVirtual(const MIDIPacketList& list, void* self, void*);

    void midiNotifyAdd(const MIDINotification& message);
    void midiNotifyRemove(const MIDINotification& message);
    bool isOwn(MIDIEndpointRef endpoint) const;
    void post(const char* name, QrMidiConnection& connection);
    std::string virtualName() const;
    void makeVirtualSource();
    void makeVirtualDestination();
    void keepVirtualDestinationID();
    void disposeVirtualSource();
    void disposeVirtualDestination();

    UserDefaults& m_defaults;
    MIDIClientRef m_client = 0;
    MIDIPortRef m_outputPort = 0;
    MIDIPortRef m_inputPort = 0;
    std::optional<std::string> m_virtualEndpointName;
    MIDIEndpointRef m_virtualSourceEndpoint = 0;       // 0: absent
    MIDIEndpointRef m_virtualDestinationEndpoint = 0;  // 0: absent
    std::unique_ptr<QrMidiSource> m_virtualDestinationSource;
    std::atomic<QrMidiSource*> m_virtualReader{nullptr};  // the same, for the MIDI thread
    std::unique_ptr<QrMidiDestination> m_virtualSourceDestination;
    std::vector<std::shared_ptr<QrMidiSource>> m_sources;
    std::vector<std::shared_ptr<QrMidiDestination>> m_destinations;
    QrMidiDelegate* m_delegate = nullptr;
    RunLoop::Token m_rescanTimer = 0;
};
