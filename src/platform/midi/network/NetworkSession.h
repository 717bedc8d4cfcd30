#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "midi/MidiNetworkSession.h"
#include "midi/network/NetworkSessionHost.h"
#include "midi/network/PlainName.h"
#include "midi/network/SessionDoor.h"
#include "midi/network/SessionPeers.h"
#include "midi/network/SessionSender.h"

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
        std::uint32_t lastPeer = 0;             // the number that was last given to a peer
    };
    /// With those that are about to take part.
    static constexpr std::size_t kMostPeers = SessionPeers::kMost;

    NetworkSession(NetworkSessionHost& host, Identity identity);
    ~NetworkSession();

    /// Said from now on.
    void setName(const std::string& name) { m_sender.setName(plainName(name)); }
    /// Those who take part stay. Who waits for the player is refused if now nobody may, and let in
    /// if now everybody may, at its next invitation.
    void setPolicy(MIDINetworkSession::ConnectionPolicy policy);
    void receive(SessionPort at, const NetworkAddress& from, std::span<const std::uint8_t> datagram,
                 SessionTime now);
    /// The system has said that nobody listens there.
    void unreachable(const NetworkAddress& to, SessionTime now);
    /// Invites whoever listens at a control port.
    void invite(const NetworkAddress& control, SessionTime now);
    /// One that is refused is not heard again for AskList::kPatience.
    void answer(std::uint32_t asker, bool allowed, SessionTime now);
    void disconnect(std::uint32_t peer, SessionTime now);
    /// One or several whole messages, with a recovery journal.
    void send(std::uint32_t peer, std::span<const std::uint8_t> messages, SessionTime now);
    /// Does what is due; answers when to be called again at the latest.
    SessionTime turn(SessionTime now);
    /// Says goodbye to everybody.
    void close(SessionTime now);

  private:
    static constexpr const char* kHasRefused = "It has refused.";

    struct Arrival {
        SessionPort at;
        const NetworkAddress& from;
        SessionTime now;
    };

    void receiveCommand(const Arrival& arrival, const SessionPacket& packet);
    void receiveMidi(const Arrival& arrival, std::span<const std::uint8_t> datagram);
    void receiveInvitation(const Arrival& arrival, const SessionPacket& packet);
    void receiveAccepted(const Arrival& arrival, const SessionPacket& packet);
    void receiveRefused(const Arrival& arrival, const SessionPacket& packet);
    void receiveGoodbye(const Arrival& arrival, const SessionPacket& packet);
    void receiveClock(const Arrival& arrival, const SessionPacket& packet);

    void invitedAgain(SessionPeer& peer, const Arrival& arrival, const SessionPacket& packet);
    void completedByThem(SessionPeer& peer, const Arrival& arrival, const SessionPacket& packet);
    void knock(const Arrival& arrival, const SessionPacket& packet);
    void admit(std::uint32_t id, const std::string& name, const Arrival& arrival,
               const SessionPacket& packet);
    bool yieldsTo(const SessionPeer& invite, const NetworkAddress& from, std::uint32_t ssrc);

    void join(SessionPeer& peer, SessionTime now);
    void leave(const SessionPeer& peer, bool goodbye, SessionTime now);
    void fail(const SessionPeer& peer, const char* why);
    void sendInvitation(SessionPeer& peer, SessionTime now);
    void inviteAgain(SessionPeer& peer, SessionTime now);
    void sendClock(SessionPeer& peer, SessionTime now);
    void sendFeedback(SessionPeer& peer, SessionTime now);

    void turnPeer(SessionPeer& peer, SessionTime now);
    SessionTime dueOf(const SessionPeer& peer) const;

    NetworkSessionHost& m_host;
    SessionSender m_sender;
    std::function<std::uint32_t()> m_random;
    std::uint32_t m_lastId;
    SessionPeers m_peers;
    SessionDoor m_door{m_host};
};
