#include "NetworkLines.h"

#include <algorithm>

#include "log/Log.h"

void NetworkLines::tellMissing(const std::vector<MIDINetworkSession::Peer>& from,
                               const std::vector<MIDINetworkSession::Peer>& in,
                               const char* what) const {
    for (const auto& peer : from) {
        if (std::ranges::find(in, peer.id, &MIDINetworkSession::Peer::id) == in.end())
            m_tell(peer.name, what + peer.address);
    }
}

void NetworkLines::look() {
    const MIDINetworkSession& session = MIDINetworkSession::defaultSession();
    if (session.port() != m_port) {
        m_port = session.port();
        m_tell(session.localName(),
               m_port ? "is our session, open at port " + std::to_string(m_port) : "is closed");
    }
    const auto peers = session.connections();
    tellMissing(m_peers, peers, "has left, from ");
    tellMissing(peers, m_peers, "takes part, from ");
    m_peers = peers;
    const auto requests = session.requests();
    tellMissing(requests, m_requests, "asks to take part, from ");
    m_requests = requests;
    const std::string problem = session.problem();
    if (problem != m_problem && !problem.empty())
        tellUser("%s", problem.c_str());
    m_problem = problem;
}
