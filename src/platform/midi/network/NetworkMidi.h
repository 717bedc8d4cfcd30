#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <thread>

#include "midi/backends/MidiBackend.h"
#include "midi/network/AttachedSubnets.h"
#include "midi/network/NetworkBoard.h"
#include "midi/network/NetworkDirectory.h"
#include "midi/network/NetworkLanes.h"
#include "midi/network/NetworkSockets.h"
#include "midi/network/PacketGatherer.h"
#include "midi/network/StormBrake.h"
#include "midi/network/WakeEvent.h"

/// The session of MIDI over the network as a back end: who takes part is one source and one
/// destination.
///
/// One thread. It sleeps until a datagram comes, the session has something to do, or somebody wants
/// something; it owns the sockets and the session, and hands on what it hears as soon as it has
/// read it.
class NetworkMidi final : public MidiBackend, private NetworkSessionHost {
  public:
    /// Serves a board: that of the default session but in tests.
    explicit NetworkMidi(
        std::shared_ptr<NetworkBoard> board = MIDINetworkSession::defaultSession().board());
    ~NetworkMidi() override { stop(); }

    bool available() const override { return true; }
    void start(MidiBackendHost& host, std::size_t number) override;
    /// Says goodbye to everybody.
    void stop() override;
    void open(const Lane& lane) override { m_lanes.open(lane); }
    void close(MIDIEndpointRef lane) override { m_lanes.close(lane); }
    OSStatus send(MIDIEndpointRef lane, const MIDIPacketList& list) override;
    void flush(MIDIEndpointRef lane) override { m_lanes.forget(lane); }

  private:
    void send(SessionPort from, const NetworkAddress& to,
              std::span<const std::uint8_t> datagram) override;
    bool isNear(const NetworkAddress& address) override;
    bool isContact(const NetworkAddress& address) override;
    void peerJoined(std::uint32_t peer, const std::string& name,
                    const NetworkAddress& control) override;
    void peerLeft(std::uint32_t peer) override;
    void asked(std::uint32_t peer, const std::string& name, const NetworkAddress& control) override;
    void askEnded(std::uint32_t peer) override;
    void inviteFailed(const NetworkAddress& control, const std::string& why) override;
    void received(std::uint32_t peer, SessionTime time,
                  std::span<const std::uint8_t> message) override;

    struct Guest {
        std::uint32_t peer;
        std::string name;
        NetworkAddress control;
    };
    using Guests = std::vector<Guest>;

    void run();
    void settle();
    void openSession();
    void closeSession();
    void obey(const NetworkBoard::Order& order);
    void sendQueued();
    void sleepUntil(SessionTime due);
    void receiveFrom(SessionPort port);
    void tell();
    std::vector<MidiBackendPort> ports() const;
    static NetworkBoard::Peers shown(const Guests& guests);

    const std::shared_ptr<NetworkBoard> m_board;
    MidiBackendHost* m_host = nullptr;
    std::size_t m_number = 0;
    std::thread m_thread;
    std::atomic<bool> m_stopping{false};
    WakeEvent m_wake;
    NetworkLanes m_lanes;

    // Of the thread.
    NetworkSockets m_sockets;
    std::optional<NetworkSession> m_session;
    AttachedSubnets m_near;
    std::optional<NetworkDirectory> m_directory;
    PacketGatherer m_heard;
    StormBrake m_brake;
    SessionTime m_nap = 0;       // before the next look at the sockets
    SessionTime m_tryAgain = 0;  // when the sockets could not be opened
    Guests m_connections;
    Guests m_requests;
    bool m_changed = false;  // since the board and the host were told
    bool m_portsChanged = false;
};
