#pragma once

#include "midi/network/IncomingStream.h"
#include "midi/network/NetworkSessionHost.h"

/// Takes what one peer plays to the host.
class PeerInput final : private MidiCommandSink {
  public:
    PeerInput(NetworkSessionHost& host, std::uint32_t peer) : m_host(host), m_peer(peer) {}

    bool take(const RtpMidiPacket& packet, SessionTime now) {
        m_now = now;
        return m_stream.take(packet);
    }
    std::uint16_t heardThrough() const { return m_stream.heardThrough(); }
    bool holdsNotes() const { return m_stream.notes().any(); }
    void releaseAll(SessionTime now) {
        m_now = now;
        m_stream.releaseAll();
    }

  private:
    void command(std::span<const std::uint8_t> message) override {
        m_host.received(m_peer, m_now, message);
    }

    NetworkSessionHost& m_host;
    std::uint32_t m_peer;
    SessionTime m_now = 0;
    IncomingStream m_stream{*this};
};
