#pragma once

#include <functional>
#include <string>
#include <vector>

#include "midi/MidiNetworkSession.h"

/// Tells in lines what happens to the network session: where it is open, who asks, comes and
/// goes, and what fails. [main]
class NetworkLines {
  public:
    using Tell = std::function<void(const std::string& who, const std::string& what)>;

    explicit NetworkLines(Tell tell) : m_tell(std::move(tell)) {}

    /// Compares the session with the last look.
    void look();
    /// What has failed last, in one line; else empty.
    const std::string& problem() const { return m_problem; }

  private:
    void tellMissing(const std::vector<MIDINetworkSession::Peer>& from,
                     const std::vector<MIDINetworkSession::Peer>& in, const char* what) const;

    Tell m_tell;
    std::uint16_t m_port = 0;
    std::string m_problem;
    std::vector<MIDINetworkSession::Peer> m_peers;
    std::vector<MIDINetworkSession::Peer> m_requests;
};
