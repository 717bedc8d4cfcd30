#include "midi/network/NetworkSession.h"

#include <algorithm>

#include "midi/network/PlainName.h"

using Policy = MIDINetworkSession::ConnectionPolicy;

namespace {

constexpr SessionTime kHalfOpenPatience = 5 * kSessionSecond;
constexpr SessionTime kSilence = 25 * kSessionSecond;
constexpr SessionTime kFeedbackAfter = kSessionSecond;
// The first clock exchanges follow each other quickly, since some peers play only after them.
constexpr int kFastClocks = 6;
constexpr SessionTime kFastClockEvery = kSessionSecond / 2;
constexpr SessionTime kClockEvery = 10 * kSessionSecond;

constexpr const char* kNobodyListens = "Nobody listens there.";

}  // namespace

NetworkSession::NetworkSession(NetworkSessionHost& host, Identity identity)
    : m_host(host),
      m_sender(host, identity.ssrc, plainName(identity.name)),
      m_random(std::move(identity.random)),
      m_lastId(identity.lastPeer) {}

NetworkSession::~NetworkSession() = default;

void NetworkSession::setPolicy(Policy policy) {
    m_door.setPolicy(policy);
    if (policy == Policy::hostsInContactsList)
        return;
    for (const AskList::Ask& ask : m_door.asks().takeAll()) {
        if (policy == Policy::noOne)
            m_sender.say(SessionPort::control, ask.control, SessionCommand::refused, ask.token);
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

// Taking part.

void NetworkSession::join(SessionPeer& peer, SessionTime now) {
    peer.stage = SessionPeer::Stage::joined;
    peer.heard = now;
    peer.round = 0;
    if (!peer.weInvited)
        peer.due = kNever;
    peer.input = std::make_unique<PeerInput>(m_host, peer.id);
    peer.output =
        std::make_unique<OutgoingStream>(m_sender.ssrc(), static_cast<std::uint16_t>(m_random()));
    m_host.peerJoined(peer.id, peer.name, peer.control);
}

void NetworkSession::leave(const SessionPeer& leaving, bool goodbye, SessionTime now) {
    const SessionPeer peer = m_peers.take(leaving);
    if (goodbye)
        m_sender.goodbye(peer);
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
        m_sender.say(SessionPort::control, ask.control, SessionCommand::refused, ask.token);
}

void NetworkSession::send(std::uint32_t id, std::span<const std::uint8_t> messages,
                          SessionTime now) {
    if (const SessionPeer* const peer = m_peers.joined(id))
        peer->output->send(messages, now, m_sender.toDataOf(*peer));
}

/// Three exchanges: 0 asks, 1 answers, 2 tells the one who has answered; nothing answers 2.
void NetworkSession::receiveClock(const Arrival& arrival, const SessionPacket& packet) {
    const SessionPeer* const peer = m_peers.ofStream(arrival.from, packet.ssrc);
    if (!peer || !peer->isJoined() || packet.count > (peer->weInvited ? 1 : 0))
        return;
    SessionPacket reply = packet;
    ++reply.count;
    reply.times[reply.count] = sessionTicks(arrival.now);
    m_sender.say(arrival.at, arrival.from, reply);
}

void NetworkSession::sendClock(SessionPeer& peer, SessionTime now) {
    peer.due = now + (++peer.round < kFastClocks ? kFastClockEvery : kClockEvery);
    m_sender.clock(peer, now);
}

/// Goes on while notes are held: the system says that nobody listens only when something is sent.
void NetworkSession::sendFeedback(SessionPeer& peer, SessionTime now) {
    peer.feedback = peer.input->holdsNotes() ? now + kFeedbackAfter : kNever;
    m_sender.feedback(peer);
}

// Time.

SessionTime NetworkSession::turn(SessionTime now) {
    m_peers.forEach([&](SessionPeer& peer) { turnPeer(peer, now); });
    SessionTime next = m_door.asks().turn(now);
    m_peers.forEach([&](const SessionPeer& peer) { next = std::min(next, dueOf(peer)); });
    return next;
}

void NetworkSession::turnPeer(SessionPeer& peer, SessionTime now) {
    if (peer.isInviting() && now >= peer.due)
        return inviteAgain(peer, now);
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
    peer.output->turn(now, m_sender.toDataOf(peer));
}

SessionTime NetworkSession::dueOf(const SessionPeer& peer) const {
    if (peer.isInviting())
        return peer.due;
    if (!peer.isJoined())
        return peer.heard + kHalfOpenPatience;
    return std::min({peer.heard + kSilence, peer.due, peer.feedback, peer.output->due()});
}
