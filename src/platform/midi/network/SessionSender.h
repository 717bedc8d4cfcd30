#pragma once

#include <cstdint>
#include <string>

#include "midi/network/NetworkSessionHost.h"
#include "midi/network/OutgoingStream.h"
#include "midi/network/SessionPacket.h"
#include "midi/network/SessionPeer.h"

/// What a session says: packets under its name and its stream's number, handed to the host that
/// sends them. One thread at a time.
class SessionSender {
  public:
    SessionSender(NetworkSessionHost& host, std::uint32_t ssrc, std::string name)
        : m_host(host), m_ssrc(ssrc), m_name(std::move(name)) {}

    std::uint32_t ssrc() const { return m_ssrc; }
    /// Said from now on.
    void setName(std::string name) { m_name = std::move(name); }

    void say(SessionPort at, const NetworkAddress& to, SessionPacket packet) const;
    void say(SessionPort at, const NetworkAddress& to, SessionCommand command,
             std::uint32_t token) const;

    /// At the port that is to be asked next.
    void invitation(const SessionPeer& peer) const;
    /// Begins an exchange of clocks.
    void clock(const SessionPeer& peer, SessionTime now) const;
    /// How far we have heard.
    void feedback(const SessionPeer& peer) const;
    void goodbye(const SessionPeer& peer) const;
    /// What carries packets of MIDI to a peer, which outlives it.
    OutgoingStream::Emit toDataOf(const SessionPeer& peer) const;

  private:
    NetworkSessionHost& m_host;
    std::uint32_t m_ssrc;  // of our stream
    std::string m_name;
};
