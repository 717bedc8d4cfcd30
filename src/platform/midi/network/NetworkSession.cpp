#include "midi/network/NetworkSession.h"

#include <algorithm>

#include "midi/network/PlainName.h"

using Policy = MIDINetworkSession::ConnectionPolicy;
using Stage = SessionPeer::Stage;

namespace {

constexpr SessionTime kInviteEvery = kSessionSecond;
constexpr int kInvites = 12;
constexpr SessionTime kHalfOpenPatience = 5 * kSessionSecond;
constexpr SessionTime kNewPeerEvery = kSessionSecond;
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
    m_policy = policy;
    if (policy == Policy::hostsInContactsList)
        return;
    for (const AskList::Ask& ask : m_asks.takeAll()) {
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
    const std::size_t index = indexOfStream(arrival.from, packet.ssrc);
    if (index < m_peers.size() && m_peers[index].isJoined())
        m_peers[index].heard = arrival.now;
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
            if (index < m_peers.size() && m_peers[index].isJoined())
                m_peers[index].output->heardThrough(packet.sequence);
    }
}

void NetworkSession::receiveMidi(const Arrival& arrival, std::span<const std::uint8_t> datagram) {
    const auto packet = RtpMidiPacket::read(datagram);
    if (!packet)
        return;
    const std::size_t index = indexOfStream(arrival.from, packet->ssrc);
    if (index == m_peers.size() || !m_peers[index].isJoined())
        return;
    SessionPeer& peer = m_peers[index];
    peer.heard = arrival.now;
    if (peer.input->take(*packet, arrival.now) && peer.feedback == kNever)
        peer.feedback = arrival.now + kFeedbackAfter;
}

// Invitations of others.

void NetworkSession::receiveInvitation(const Arrival& arrival, const SessionPacket& packet) {
    if (!m_host.isNear(arrival.from))
        return;
    const std::size_t index = indexOfStream(arrival.from, packet.ssrc);
    if (index < m_peers.size())
        return invitedAgain(m_peers[index], arrival, packet);
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
    const bool refused = m_policy == Policy::noOne || m_refused.holds(arrival.from, arrival.now);
    if (refused)
        return say(arrival.at, arrival.from, SessionCommand::refused, packet.token);
    if (m_policy == Policy::hostsInContactsList && !m_host.isContact(arrival.from))
        return ask(arrival, packet);
    if (m_newcomers.holds(arrival.from, arrival.now))
        return;  // silently: it will try again, and then the second is over
    admit(++m_lastId, plainName(packet.name), arrival, packet);
}

void NetworkSession::ask(const Arrival& arrival, const SessionPacket& packet) {
    if (m_asks.knows(arrival.from))
        return m_asks.repeat(arrival.from, packet.ssrc, packet.token, arrival.now);
    if (m_newcomers.holds(arrival.from, arrival.now))
        return;
    if (m_asks.isFull())
        return say(arrival.at, arrival.from, SessionCommand::refused, packet.token);
    m_newcomers.hold(arrival.from, arrival.now, arrival.now + kNewPeerEvery);
    m_asks.add({.id = ++m_lastId,
                .token = packet.token,
                .ssrc = packet.ssrc,
                .name = plainName(packet.name),
                .control = arrival.from,
                .until = arrival.now + AskList::kPatience});
}

void NetworkSession::answer(std::uint32_t asker, bool allowed, SessionTime now) {
    const auto ask = m_asks.take(asker);
    if (!ask)
        return;
    const SessionPacket packet{.token = ask->token, .ssrc = ask->ssrc};
    if (allowed)
        return admit(ask->id, ask->name, {SessionPort::control, ask->control, now}, packet);
    m_refused.hold(ask->control, now, now + AskList::kPatience);
    say(SessionPort::control, ask->control, SessionCommand::refused, ask->token);
}

void NetworkSession::admit(std::uint32_t id, const std::string& name, const Arrival& arrival,
                           const SessionPacket& packet) {
    if (!makeRoom(arrival.from))
        return say(SessionPort::control, arrival.from, SessionCommand::refused, packet.token);
    m_newcomers.hold(arrival.from, arrival.now, arrival.now + kNewPeerEvery);
    m_peers.push_back({.id = id,
                       .token = packet.token,
                       .ssrc = packet.ssrc,
                       .name = name,
                       .control = arrival.from,
                       .data = {},
                       .heard = arrival.now});
    say(SessionPort::control, arrival.from, SessionCommand::accepted, packet.token);
}

/// If there is none, a host that has several half-open ones loses the oldest of them to one that
/// has none.
bool NetworkSession::makeRoom(const NetworkAddress& forWhom) {
    if (m_peers.size() < kMostPeers)
        return true;
    const auto halfOpenOf = [&](const NetworkAddress& host) {
        return std::ranges::count_if(m_peers, [&](const SessionPeer& peer) {
            return peer.stage == Stage::halfOpen && peer.control.sameHost(host);
        });
    };
    if (halfOpenOf(forWhom) > 0)
        return false;
    const auto crowding = std::ranges::find_if(m_peers, [&](const SessionPeer& peer) {
        return peer.stage == Stage::halfOpen && halfOpenOf(peer.control) > 1;
    });
    if (crowding == m_peers.end())
        return false;
    m_peers.erase(crowding);
    return true;
}

// Invitations of ours.

void NetworkSession::invite(const NetworkAddress& control, SessionTime now) {
    const bool known = std::ranges::any_of(m_peers, [&](const SessionPeer& peer) {
        return peer.control == control && peer.stage != Stage::halfOpen;
    });
    if (known)
        return;
    if (control.port == 0 || control.port == 65535)
        return m_host.inviteFailed(control, kNoSuchPort);
    if (!m_host.isNear(control))
        return m_host.inviteFailed(control, kTooFar);
    if (!makeRoom(control))
        return m_host.inviteFailed(control, kNoRoom);
    m_peers.push_back({.id = ++m_lastId,
                       .stage = Stage::invitingControl,
                       .weInvited = true,
                       .token = m_identity.random(),
                       .name = {},
                       .control = control,
                       .data = control.at(static_cast<std::uint16_t>(control.port + 1))});
    sendInvitation(m_peers.back(), now);
}

void NetworkSession::sendInvitation(SessionPeer& peer, SessionTime now) {
    const bool first = peer.stage == Stage::invitingControl;
    ++peer.round;
    peer.due = now + kInviteEvery;
    say(first ? SessionPort::control : SessionPort::data, first ? peer.control : peer.data,
        SessionCommand::invitation, peer.token);
}

void NetworkSession::receiveAccepted(const Arrival& arrival, const SessionPacket& packet) {
    const std::size_t index = indexOfInvite(arrival.from, packet.token);
    if (index == m_peers.size())
        return;
    SessionPeer& peer = m_peers[index];
    if (packet.ssrc == m_identity.ssrc)
        return fail(index, kOurselves);
    if (peer.stage == Stage::invitingControl && arrival.at == SessionPort::control) {
        if (yieldsTo(peer, arrival.from, packet.ssrc))
            return;
        SessionPeer& invite = m_peers[indexOfInvite(arrival.from, packet.token)];
        invite.ssrc = packet.ssrc;
        invite.name = plainName(packet.name);
        invite.stage = Stage::invitingData;
        invite.round = 0;
        sendInvitation(invite, arrival.now);
    } else if (peer.stage == Stage::invitingData && arrival.at == SessionPort::data &&
               peer.ssrc == packet.ssrc) {
        peer.data = arrival.from;
        peer.due = arrival.now;
        join(peer, arrival.now);
        sendClock(peer, arrival.now);
    }
}

/// Whether an invitation of ours is needless since the invited one has joined or is about to by
/// an invitation of its own. Else that one is forgotten.
bool NetworkSession::yieldsTo(const SessionPeer& invite, const NetworkAddress& from,
                              std::uint32_t ssrc) {
    const std::size_t other = indexOfStream(from, ssrc);
    if (other == m_peers.size())
        return false;
    const bool yields = m_peers[other].stage != Stage::halfOpen || m_identity.ssrc > ssrc;
    const auto which = yields ? &invite - m_peers.data() : static_cast<std::ptrdiff_t>(other);
    m_peers.erase(m_peers.begin() + which);
    return yields;
}

void NetworkSession::receiveRefused(const Arrival& arrival, const SessionPacket& packet) {
    const std::size_t index = indexOfInvite(arrival.from, packet.token);
    if (index < m_peers.size())
        fail(index, packet.ssrc == m_identity.ssrc ? kOurselves : kHasRefused);
}

void NetworkSession::fail(std::size_t index, const char* why) {
    const NetworkAddress control = m_peers[index].control;
    m_peers.erase(m_peers.begin() + static_cast<std::ptrdiff_t>(index));
    m_host.inviteFailed(control, why);
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

void NetworkSession::leave(std::size_t index, bool goodbye, SessionTime now) {
    const SessionPeer peer = std::move(m_peers[index]);
    m_peers.erase(m_peers.begin() + static_cast<std::ptrdiff_t>(index));
    if (goodbye)
        sendGoodbye(peer);
    if (!peer.isJoined())
        return;
    peer.input->releaseAll(now);
    m_host.peerLeft(peer.id);
}

void NetworkSession::receiveGoodbye(const Arrival& arrival, const SessionPacket& packet) {
    m_asks.end(arrival.from, packet.ssrc);
    const std::size_t index = indexOfStream(arrival.from, packet.ssrc);
    if (index == m_peers.size())
        return;
    if (m_peers[index].isInviting())
        fail(index, kHasRefused);
    else
        leave(index, false, arrival.now);
}

void NetworkSession::unreachable(const NetworkAddress& to, SessionTime now) {
    m_asks.endAt(to);
    for (std::size_t i = m_peers.size(); i-- > 0;) {
        if (m_peers[i].control != to && m_peers[i].data != to)
            continue;
        if (m_peers[i].isInviting())
            fail(i, kNobodyListens);
        else
            leave(i, false, now);
    }
}

void NetworkSession::disconnect(std::uint32_t peer, SessionTime now) {
    if (const std::size_t index = indexOf(peer); index < m_peers.size())
        leave(index, true, now);
}

void NetworkSession::close(SessionTime now) {
    while (!m_peers.empty())
        leave(m_peers.size() - 1, true, now);
    for (const AskList::Ask& ask : m_asks.takeAll())
        say(SessionPort::control, ask.control, SessionCommand::refused, ask.token);
}

void NetworkSession::send(std::uint32_t peer, std::span<const std::uint8_t> messages,
                          SessionTime now) {
    const std::size_t index = indexOf(peer);
    if (index < m_peers.size() && m_peers[index].isJoined())
        m_peers[index].output->send(messages, now, toDataOf(m_peers[index]));
}

/// Three exchanges: 0 asks, 1 answers, 2 tells the one who has answered; nothing answers 2.
void NetworkSession::receiveClock(const Arrival& arrival, const SessionPacket& packet) {
    const std::size_t index = indexOfStream(arrival.from, packet.ssrc);
    if (index == m_peers.size() || !m_peers[index].isJoined() || packet.count > 1)
        return;
    if (packet.count == 1 && !m_peers[index].weInvited)
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
    for (std::size_t i = m_peers.size(); i-- > 0;)
        turnPeer(i, now);
    SessionTime next = m_asks.turn(now);
    for (const SessionPeer& peer : m_peers)
        next = std::min(next, dueOf(peer));
    return next;
}

void NetworkSession::turnPeer(std::size_t index, SessionTime now) {
    SessionPeer& peer = m_peers[index];
    if (peer.isInviting() && now >= peer.due) {
        if (peer.round >= kInvites)
            return fail(index, kNobodyAnswers);
        return sendInvitation(peer, now);
    }
    if (peer.stage == Stage::halfOpen && now >= peer.heard + kHalfOpenPatience)
        return leave(index, false, now);
    if (!peer.isJoined())
        return;
    if (now >= peer.heard + kSilence)
        return leave(index, true, now);
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

std::size_t NetworkSession::indexOfStream(const NetworkAddress& from, std::uint32_t ssrc) const {
    const auto peer =
        std::ranges::find_if(m_peers, [&](const SessionPeer& one) { return one.is(from, ssrc); });
    return static_cast<std::size_t>(peer - m_peers.begin());
}

std::size_t NetworkSession::indexOfInvite(const NetworkAddress& from, std::uint32_t token) const {
    const auto peer = std::ranges::find_if(m_peers, [&](const SessionPeer& one) {
        return one.isInviting() && one.token == token && one.control.sameHost(from);
    });
    return static_cast<std::size_t>(peer - m_peers.begin());
}

std::size_t NetworkSession::indexOf(std::uint32_t peer) const {
    return static_cast<std::size_t>(std::ranges::find(m_peers, peer, &SessionPeer::id) -
                                    m_peers.begin());
}
