#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "midi/MidiNetworkSession.h"
#include "midi/network/NetworkAddress.h"

/// A session has two ports beside one another; who takes part is known by both.
enum class SessionPort : std::uint8_t { control, data };

/// Nanoseconds of the system's monotonic clock.
using SessionTime = std::uint64_t;

/// What a session makes happen. Called from within the session's own functions, which must not be
/// called back.
class NetworkSessionHost {
  public:
    virtual ~NetworkSessionHost() = default;
    virtual void send(SessionPort from, const NetworkAddress& to,
                      std::span<const std::uint8_t> datagram) = 0;
    /// Whether a host is on a directly attached subnet, or is this one.
    virtual bool isNear(const NetworkAddress& address) = 0;
    /// Whether the player has allowed that host in.
    virtual bool isContact(const NetworkAddress& address) = 0;

    virtual void peerJoined(std::uint32_t peer, const std::string& name,
                            const NetworkAddress& control) = 0;
    /// After the releases of all its notes.
    virtual void peerLeft(std::uint32_t peer) = 0;
    /// Waits for answer(), until askEnded().
    virtual void asked(std::uint32_t peer, const std::string& name,
                       const NetworkAddress& control) = 0;
    virtual void askEnded(std::uint32_t peer) = 0;
    /// An invitation of ours came to nothing; one line for the player.
    virtual void inviteFailed(const NetworkAddress& control, const std::string& why) = 0;
    /// One whole message with its status byte, in the order played; `time` is that of its arrival.
    virtual void received(std::uint32_t peer, SessionTime time,
                          std::span<const std::uint8_t> message) = 0;
};

/// MIDI over the network: RTP-MIDI (RFC 6295) under the session protocol that desktop and tablet
/// systems share (invitation, clock synchronisation, receiver feedback, goodbye). It has no socket,
/// no thread and no clock: datagrams and times come in, datagrams and notices go out, and the same
/// input always gives the same output. Nothing that comes in is trusted. One thread at a time.
class NetworkSession {
  public:
    struct Identity {
        std::string name;
        std::uint32_t ssrc = 0;                 // of our stream
        std::function<std::uint32_t()> random;  // for tokens and first sequence numbers
    };
    static constexpr std::size_t kMostPeers = 8;

    NetworkSession(NetworkSessionHost& host, Identity identity);
    ~NetworkSession();

    void setPolicy(MIDINetworkSession::ConnectionPolicy policy);
    void receive(SessionPort at, const NetworkAddress& from, std::span<const std::uint8_t> datagram,
                 SessionTime now);
    /// The system has said that nobody listens there.
    void unreachable(const NetworkAddress& to, SessionTime now);
    /// Invites whoever listens at a control port.
    void invite(const NetworkAddress& control, SessionTime now);
    void answer(std::uint32_t asker, bool allowed, SessionTime now);
    void disconnect(std::uint32_t peer, SessionTime now);
    /// One or several whole messages, with a recovery journal.
    void send(std::uint32_t peer, std::span<const std::uint8_t> messages, SessionTime now);
    /// Does what is due; answers when to be called again at the latest.
    SessionTime turn(SessionTime now);
    /// Says goodbye to everybody.
    void close(SessionTime now);
};
