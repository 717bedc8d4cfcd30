#include "midi/network/NetworkSession.h"
#include "midi/network/PlainName.h"

// How others are let in, and how we come in where others are.

using Stage = SessionPeer::Stage;

namespace {

constexpr SessionTime kInviteEvery = kSessionSecond;
constexpr int kInvites = 12;

constexpr const char* kNobodyAnswers = "Nobody has answered.";
constexpr const char* kTooFar = "It is not on a network that this device is attached to.";
constexpr const char* kNoSuchPort = "A session needs two ports, so its first is 1 to 65534.";
constexpr const char* kNoRoom = "Eight others take part already.";
constexpr const char* kOurselves = "That is this session itself.";

}  // namespace

// Of others.

void NetworkSession::receiveInvitation(const Arrival& arrival, const SessionPacket& packet) {
    if (!m_host.isNear(arrival.from))
        return;
    if (SessionPeer* const peer = m_peers.ofStream(arrival.from, packet.ssrc))
        return invitedAgain(*peer, arrival, packet);
    if (arrival.at == SessionPort::control && packet.ssrc != m_sender.ssrc())
        return knock(arrival, packet);
    m_sender.say(arrival.at, arrival.from, SessionCommand::refused, packet.token);
}

/// By one that is known: the rest of its invitation, or our OK was lost, or it has begun again.
void NetworkSession::invitedAgain(SessionPeer& peer, const Arrival& arrival,
                                  const SessionPacket& packet) {
    if (!peer.weInvited && peer.token != packet.token) {
        peer.token = packet.token;
        if (peer.isJoined()) {
            peer.input->releaseAll(arrival.now);
            peer.input = std::make_unique<PeerInput>(m_host, peer.id);
        }
    }
    if (!peer.weInvited && arrival.at == SessionPort::control)
        peer.control = arrival.from;
    m_sender.say(arrival.at, arrival.from, SessionCommand::accepted, packet.token);
    if (arrival.at == SessionPort::data)
        completedByThem(peer, arrival, packet);
}

/// Where both invite each other at once, the invitation of the lower SSRC counts.
void NetworkSession::completedByThem(SessionPeer& peer, const Arrival& arrival,
                                     const SessionPacket& packet) {
    if (peer.isInviting() && m_sender.ssrc() < peer.ssrc)
        return;
    if (!peer.weInvited || peer.isInviting())
        peer.data = arrival.from;
    if (peer.isJoined())
        return;
    peer.weInvited = false;
    peer.token = packet.token;
    join(peer, arrival.now);
}

void NetworkSession::knock(const Arrival& arrival, const SessionPacket& packet) {
    switch (m_door.knock(arrival.from, packet, arrival.now)) {
        case SessionDoor::Verdict::admit:
            return admit(++m_lastId, plainName(packet.name), arrival, packet);
        case SessionDoor::Verdict::ask:
            return m_door.asks().add({.id = ++m_lastId,
                                      .token = packet.token,
                                      .ssrc = packet.ssrc,
                                      .name = plainName(packet.name),
                                      .control = arrival.from,
                                      .until = arrival.now + AskList::kPatience});
        case SessionDoor::Verdict::refuse:
            return m_sender.say(arrival.at, arrival.from, SessionCommand::refused, packet.token);
        case SessionDoor::Verdict::ignore:
            return;
    }
}

void NetworkSession::answer(std::uint32_t asker, bool allowed, SessionTime now) {
    const auto ask = m_door.asks().take(asker);
    if (!ask)
        return;
    const SessionPacket packet{.token = ask->token, .ssrc = ask->ssrc};
    if (allowed)
        return admit(ask->id, ask->name, {SessionPort::control, ask->control, now}, packet);
    m_door.hasRefused(ask->control, now);
    m_sender.say(SessionPort::control, ask->control, SessionCommand::refused, ask->token);
}

void NetworkSession::admit(std::uint32_t id, const std::string& name, const Arrival& arrival,
                           const SessionPacket& packet) {
    if (!m_peers.makeRoom(arrival.from))
        return m_sender.say(SessionPort::control, arrival.from, SessionCommand::refused,
                            packet.token);
    m_door.hasAdmitted(arrival.from, arrival.now);
    m_peers.add({.id = id,
                 .token = packet.token,
                 .ssrc = packet.ssrc,
                 .name = name,
                 .control = arrival.from,
                 .data = {},
                 .heard = arrival.now});
    m_sender.say(SessionPort::control, arrival.from, SessionCommand::accepted, packet.token);
}

// Ours.

void NetworkSession::invite(const NetworkAddress& control, SessionTime now) {
    bool known = false;
    m_peers.forEach(
        [&](const SessionPeer& peer) { known |= peer.control == control && !peer.isHalfOpen(); });
    if (known)
        return;
    if (control.port == 0 || control.port == 65535)
        return m_host.inviteFailed(control, kNoSuchPort);
    if (!m_host.isNear(control))
        return m_host.inviteFailed(control, kTooFar);
    if (!m_peers.makeRoom(control))
        return m_host.inviteFailed(control, kNoRoom);
    SessionPeer& peer =
        m_peers.add({.id = ++m_lastId,
                     .stage = Stage::invitingControl,
                     .weInvited = true,
                     .token = m_random(),
                     .control = control,
                     .data = control.at(static_cast<std::uint16_t>(control.port + 1))});
    sendInvitation(peer, now);
}

void NetworkSession::sendInvitation(SessionPeer& peer, SessionTime now) {
    ++peer.round;
    peer.due = now + kInviteEvery;
    m_sender.invitation(peer);
}

void NetworkSession::inviteAgain(SessionPeer& peer, SessionTime now) {
    if (peer.round >= kInvites)
        return fail(peer, kNobodyAnswers);
    sendInvitation(peer, now);
}

void NetworkSession::receiveAccepted(const Arrival& arrival, const SessionPacket& packet) {
    SessionPeer* const peer = m_peers.ofInvite(arrival.from, packet.token);
    if (!peer)
        return;
    if (packet.ssrc == m_sender.ssrc())
        return fail(*peer, kOurselves);
    if (peer->stage == Stage::invitingControl && arrival.at == SessionPort::control) {
        if (yieldsTo(*peer, arrival.from, packet.ssrc))
            return;
        peer->ssrc = packet.ssrc;
        peer->name = plainName(packet.name);
        peer->stage = Stage::invitingData;
        peer->round = 0;
        sendInvitation(*peer, arrival.now);
    } else if (peer->stage == Stage::invitingData && arrival.at == SessionPort::data &&
               peer->ssrc == packet.ssrc) {
        peer->data = arrival.from;
        join(*peer, arrival.now);
        sendClock(*peer, arrival.now);
    }
}

/// Whether an invitation of ours is needless since the invited one has joined or is about to by
/// an invitation of its own. Else that one is forgotten.
bool NetworkSession::yieldsTo(const SessionPeer& invite, const NetworkAddress& from,
                              std::uint32_t ssrc) {
    const SessionPeer* const other = m_peers.ofStream(from, ssrc);
    if (!other)
        return false;
    const bool yields = !other->isHalfOpen() || m_sender.ssrc() > ssrc;
    m_peers.take(yields ? invite : *other);
    return yields;
}

void NetworkSession::receiveRefused(const Arrival& arrival, const SessionPacket& packet) {
    if (const SessionPeer* const peer = m_peers.ofInvite(arrival.from, packet.token))
        fail(*peer, packet.ssrc == m_sender.ssrc() ? kOurselves : kHasRefused);
}

void NetworkSession::fail(const SessionPeer& peer, const char* why) {
    m_host.inviteFailed(m_peers.take(peer).control, why);
}
