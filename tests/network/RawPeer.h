#pragma once

#include <vector>

#include "midi/network/NetworkSockets.h"

/// The other end of a session, datagram by datagram. It answers nothing by itself.
class RawPeer {
  public:
    RawPeer() { m_sockets.open(); }

    /// Invites a session of this machine on both ports; whether it was let in.
    bool join(std::uint16_t port, const std::string& name);
    /// One packet without a journal.
    void play(const std::vector<std::uint8_t>& commands);
    void goodbye();
    /// Nobody listens here any more, and nobody is told.
    void vanish() { m_sockets.close(); }
    std::uint16_t port() const { return m_sockets.port(); }

  private:
    using Bytes = std::vector<std::uint8_t>;

    Bytes command(const char* letters, const std::string& name) const;
    bool invite(SessionPort port, const std::string& name);
    void send(SessionPort from, const Bytes& bytes);
    bool answered(SessionPort at, const char* letters);

    NetworkSockets m_sockets;
    std::uint16_t m_port = 0;  // of the session
    std::uint16_t m_sequence = 100;
};
