#include "midi/network/NetworkSession.h"

#include <algorithm>

#include "midi/network/PlainName.h"

using Policy = MIDINetworkSession::ConnectionPolicy;
using Stage = SessionPeer::Stage;

namespace {

constexpr SessionTime kInviteEvery = kSessionSecond;
constexpr int kInvites = 12;
constexpr SessionTime kHalfOpenPatience = 5 * kSessionSecond;
constexpr SessionTime kSilence = 25 * kSessionSecond;
constexpr SessionTime kFeedbackAfter = kSessionSecond;
// The first clock exchanges follow each other quickly, since some peers play only after them.
constexpr int kFastClocks = 6;
constexpr SessionTime kFastClockEvery = kSessionSecond / 2;
constexpr SessionTime kClockEvery = 10 * kSessionSecond;

constexpr const char* kNobodyListens = "Nobody listens there.";
constexpr const char* kNobodyAnswers = "Nobody has answered.";
constexpr const char* kHasRefused = "It has refused.";
constexpr const char* kTooFar = "It is not on a network that this device is attached to.";
constexpr const char* kNoSuchPort = "A session needs two ports, so its first is 1 to 65534.";
constexpr const char* kNoRoom = "Eight others take part already.";
constexpr const char* kOurselves = "That is this session itself.";

}  // namespace

NetworkSession::NetworkSession(NetworkSessionHost& host, Identity identity)
    : m_host(host), m_identity(std::move(identity)), m_lastId(m_identity.lastPeer) {
    m_identity.name = plainName(m_identity.name);
}

NetworkSession::~NetworkSession() = default;

void NetworkSession::setPolicy(Policy policy) {
    m_door.setPolicy(policy);
    if (policy == Policy::hostsInContactsList)
        return;
    for (const AskList::Ask& ask : m_door.asks().takeAll()) {
        if (policy == Policy::noOne)
            say(SessionPort::control, ask.control, SessionCommand::refused, ask.token);
    }
}

void NetworkSession::receive(SessionPort at, const NetworkAddress& from,
                             std::span<const std::uint8_t> datagram, SessionTime now) {
    if (!SessionPacket::isOne(datagram)) {
        if (at == SessionPort::data)
            receiveMidi({at, from, now}, datagram);
    } else if (const auto packet = SessionPacket::read(datagram)) {
        receiveCommand({at, from, now}, *packet);
    }
}

void NetworkSession::receiveCommand(const Arrival& arrival, const SessionPacket& packet) {
    SessionPeer* const peer = m_peers.ofStream(arrival.from, packet.ssrc);
    if (peer && peer->isJoined())
        peer->heard = arrival.now;
    switch (packet.command) {
        case SessionCommand::invitation:
            return receiveInvitation(arrival, packet);
        case SessionCommand::accepted:
            return receiveAccepted(arrival, packet);
        case SessionCommand::refused:
            return receiveRefused(arrival, packet);
        case SessionCommand::goodbye:
            return receiveGoodbye(arrival, packet);
        case SessionCommand::clock:
            return receiveClock(arrival, packet);
        case SessionCommand::feedback:
            if (peer && peer->isJoined())
                peer->output->heardThrough(packet.sequence);
    }
}

void NetworkSession::receiveMidi(const Arrival& arrival, std::span<const std::uint8_t> datagram) {
    const auto packet = RtpMidiPacket::read(datagram);
    if (!packet)
        return;
    SessionPeer* const peer = m_peers.ofStream(arrival.from, packet->ssrc);
    if (!peer || !peer->isJoined())
        return;
    peer->heard = arrival.now;
    if (peer->input->take(*packet, arrival.now) && peer->feedback == kNever)
        peer->feedback = arrival.now + kFeedbackAfter;
}

// Invitations of others.

void NetworkSession::receiveInvitation(const Arrival& arrival, const SessionPacket& packet) {
    if (!m_host.isNear(arrival.from))
        return;
    if (SessionPeer* const peer = m_peers.ofStream(arrival.from, packet.ssrc))
        return invitedAgain(*peer, arrival, packet);
    if (arrival.at == SessionPort::control && packet.ssrc != m_identity.ssrc)
        return knock(arrival, packet);
    say(arrival.at, arrival.from, SessionCommand::refused, packet.token);
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
    say(arrival.at, arrival.from, SessionCommand::accepted, packet.token);
    if (arrival.at == SessionPort::data)
        completedByThem(peer, arrival, packet);
}

/// Where both invite each other at once, the invitation of the lower SSRC counts.
void NetworkSession::completedByThem(SessionPeer& peer, const Arrival& arrival,
                                     const SessionPacket& packet) {
    if (peer.isInviting() && m_identity.ssrc < peer.ssrc)
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
            return say(arrival.at, arrival.from, SessionCommand::refused, packet.token);
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
    say(SessionPort::control, ask->control, SessionCommand::refused, ask->token);
}

void NetworkSession::admit(std::uint32_t id, const std::string& name, const Arrival& arrival,
                           const SessionPacket& packet) {
    if (!m_peers.makeRoom(arrival.from))
        return say(SessionPort::control, arrival.from, SessionCommand::refused, packet.token);
    m_door.hasAdmitted(arrival.from, arrival.now);
    m_peers.add({.id = id,
                 .token = packet.token,
                 .ssrc = packet.ssrc,
                 .name = name,
                 .control = arrival.from,
                 .data = {},
                 .heard = arrival.now});
    say(SessionPort::control, arrival.from, SessionCommand::accepted, packet.token);
}

// Invitations of ours.

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
                     .token = m_identity.random(),
                     .control = control,
                     .data = control.at(static_cast<std::uint16_t>(control.port + 1))});
    sendInvitation(peer, now);
}

void NetworkSession::sendInvitation(SessionPeer& peer, SessionTime now) {
    const bool first = peer.stage == Stage::invitingControl;
    ++peer.round;
    peer.due = now + kInviteEvery;
    say(first ? SessionPort::control : SessionPort::data, first ? peer.control : peer.data,
        SessionCommand::invitation, peer.token);
}

void NetworkSession::receiveAccepted(const Arrival& arrival, const SessionPacket& packet) {
    SessionPeer* const peer = m_peers.ofInvite(arrival.from, packet.token);
    if (!peer)
        return;
    if (packet.ssrc == m_identity.ssrc)
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
    const bool yields = !other->isHalfOpen() || m_identity.ssrc > ssrc;
    m_peers.take(yields ? invite : *other);
    return yields;
}

void NetworkSession::receiveRefused(const Arrival& arrival, const SessionPacket& packet) {
    if (const SessionPeer* const peer = m_peers.ofInvite(arrival.from, packet.token))
        fail(*peer, packet.ssrc == m_identity.ssrc ? kOurselves : kHasRefused);
}

void NetworkSession::fail(const SessionPeer& peer, const char* why) {
    m_host.inviteFailed(m_peers.take(peer).control, why);
}

// Taking part.

void NetworkSession::join(SessionPeer& peer, SessionTime now) {
    peer.stage = Stage::joined;
    peer.heard = now;
    peer.round = 0;
    if (!peer.weInvited)
        peer.due = kNever;
    peer.input = std::make_unique<PeerInput>(m_host, peer.id);
    peer.output = std::make_unique<OutgoingStream>(m_identity.ssrc,
                                                   static_cast<std::uint16_t>(m_identity.random()));
    m_host.peerJoined(peer.id, peer.name, peer.control);
}

void NetworkSession::leave(const SessionPeer& leaving, bool goodbye, SessionTime now) {
    const SessionPeer peer = m_peers.take(leaving);
    if (goodbye)
        sendGoodbye(peer);
    if (!peer.isJoined())
        return;
    peer.input->releaseAll(now);
    m_host.peerLeft(peer.id);
}

void NetworkSession::receiveGoodbye(const Arrival& arrival, const SessionPacket& packet) {
    m_door.asks().end(arrival.from, packet.ssrc);
    const SessionPeer* const peer = m_peers.ofStream(arrival.from, packet.ssrc);
    if (peer && peer->isInviting())
        fail(*peer, kHasRefused);
    else if (peer)
        leave(*peer, false, arrival.now);
}

void NetworkSession::unreachable(const NetworkAddress& to, SessionTime now) {
    m_door.asks().endAt(to);
    m_peers.forEach([&](const SessionPeer& peer) {
        if (peer.control != to && peer.data != to)
            return;
        if (peer.isInviting())
            fail(peer, kNobodyListens);
        else
            leave(peer, false, now);
    });
}

void NetworkSession::disconnect(std::uint32_t id, SessionTime now) {
    if (const SessionPeer* const peer = m_peers.joined(id))
        leave(*peer, true, now);
}

void NetworkSession::close(SessionTime now) {
    m_peers.forEach([&](const SessionPeer& peer) { leave(peer, true, now); });
    for (const AskList::Ask& ask : m_door.asks().takeAll())
        say(SessionPort::control, ask.control, SessionCommand::refused, ask.token);
}

void NetworkSession::send(std::uint32_t id, std::span<const std::uint8_t> messages,
                          SessionTime now) {
    if (const SessionPeer* const peer = m_peers.joined(id))
        peer->output->send(messages, now, toDataOf(*peer));
}

/// Three exchanges: 0 asks, 1 answers, 2 tells the one who has answered; nothing answers 2.
void NetworkSession::receiveClock(const Arrival& arrival, const SessionPacket& packet) {
    const SessionPeer* const peer = m_peers.ofStream(arrival.from, packet.ssrc);
    if (!peer || !peer->isJoined() || packet.count > (peer->weInvited ? 1 : 0))
        return;
    SessionPacket reply = packet;
    ++reply.count;
    reply.times[reply.count] = sessionTicks(arrival.now);
    say(arrival.at, arrival.from, reply);
}

void NetworkSession::sendClock(SessionPeer& peer, SessionTime now) {
    peer.due = now + (++peer.round < kFastClocks ? kFastClockEvery : kClockEvery);
    say(SessionPort::data, peer.data,
        {.command = SessionCommand::clock, .times = {sessionTicks(now), 0, 0}});
}

/// Goes on while notes are held: the system says that nobody listens only when something is sent.
void NetworkSession::sendFeedback(SessionPeer& peer, SessionTime now) {
    peer.feedback = peer.input->holdsNotes() ? now + kFeedbackAfter : kNever;
    say(SessionPort::control, peer.control,
        {.command = SessionCommand::feedback, .sequence = peer.input->heardThrough()});
}

void NetworkSession::sendGoodbye(const SessionPeer& peer) {
    if (peer.stage != Stage::invitingControl)
        say(SessionPort::control, peer.control, SessionCommand::goodbye, peer.token);
}

void NetworkSession::say(SessionPort at, const NetworkAddress& to, SessionPacket packet) {
    packet.ssrc = m_identity.ssrc;
    packet.name = m_identity.name;
    m_host.send(at, to, packet.written());
}

void NetworkSession::say(SessionPort at, const NetworkAddress& to, SessionCommand command,
                         std::uint32_t token) {
    say(at, to, {.command = command, .token = token});
}

OutgoingStream::Emit NetworkSession::toDataOf(const SessionPeer& peer) {
    return [this, to = &peer.data](std::span<const std::uint8_t> datagram) {
        m_host.send(SessionPort::data, *to, datagram);
    };
}

// Time.

SessionTime NetworkSession::turn(SessionTime now) {
    m_peers.forEach([&](SessionPeer& peer) { turnPeer(peer, now); });
    SessionTime next = m_door.asks().turn(now);
    m_peers.forEach([&](const SessionPeer& peer) { next = std::min(next, dueOf(peer)); });
    return next;
}

void NetworkSession::turnPeer(SessionPeer& peer, SessionTime now) {
    if (peer.isInviting() && now >= peer.due) {
        if (peer.round >= kInvites)
            return fail(peer, kNobodyAnswers);
        return sendInvitation(peer, now);
    }
    if (peer.isHalfOpen() && now >= peer.heard + kHalfOpenPatience)
        return leave(peer, false, now);
    if (!peer.isJoined())
        return;
    if (now >= peer.heard + kSilence)
        return leave(peer, true, now);
    if (now >= peer.due)
        sendClock(peer, now);
    if (now >= peer.feedback)
        sendFeedback(peer, now);
    peer.output->turn(now, toDataOf(peer));
}

SessionTime NetworkSession::dueOf(const SessionPeer& peer) const {
    if (peer.isInviting())
        return peer.due;
    if (!peer.isJoined())
        return peer.heard + kHalfOpenPatience;
    return std::min({peer.heard + kSilence, peer.due, peer.feedback, peer.output->due()});
}
