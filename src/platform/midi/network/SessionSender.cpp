#include "midi/network/SessionSender.h"

void SessionSender::say(SessionPort at, const NetworkAddress& to, SessionPacket packet) const {
    packet.ssrc = m_ssrc;
    packet.name = m_name;
    m_host.send(at, to, packet.written());
}

void SessionSender::say(SessionPort at, const NetworkAddress& to, SessionCommand command,
                        std::uint32_t token) const {
    say(at, to, {.command = command, .token = token});
}

void SessionSender::invitation(const SessionPeer& peer) const {
    const bool first = peer.stage == SessionPeer::Stage::invitingControl;
    say(first ? SessionPort::control : SessionPort::data, first ? peer.control : peer.data,
        SessionCommand::invitation, peer.token);
}

void SessionSender::clock(const SessionPeer& peer, SessionTime now) const {
    say(SessionPort::data, peer.data,
        {.command = SessionCommand::clock, .times = {sessionTicks(now), 0, 0}});
}

void SessionSender::feedback(const SessionPeer& peer) const {
    say(SessionPort::control, peer.control,
        {.command = SessionCommand::feedback, .sequence = peer.input->heardThrough()});
}

void SessionSender::goodbye(const SessionPeer& peer) const {
    if (peer.stage != SessionPeer::Stage::invitingControl)
        say(SessionPort::control, peer.control, SessionCommand::goodbye, peer.token);
}

OutgoingStream::Emit SessionSender::toDataOf(const SessionPeer& peer) const {
    return [this, to = &peer.data](std::span<const std::uint8_t> datagram) {
        m_host.send(SessionPort::data, *to, datagram);
    };
}
