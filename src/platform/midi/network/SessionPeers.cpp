#include "midi/network/SessionPeers.h"

#include <algorithm>

template <typename Which>
SessionPeer* SessionPeers::find(Which which) {
    const auto peer = std::ranges::find_if(m_peers, which);
    return peer == m_peers.end() ? nullptr : &*peer;
}

SessionPeer* SessionPeers::ofStream(const NetworkAddress& from, std::uint32_t ssrc) {
    return find([&](const SessionPeer& peer) { return peer.is(from, ssrc); });
}

SessionPeer* SessionPeers::ofInvite(const NetworkAddress& from, std::uint32_t token) {
    return find([&](const SessionPeer& peer) {
        return peer.isInviting() && peer.token == token && peer.control.sameHost(from);
    });
}

SessionPeer* SessionPeers::joined(std::uint32_t id) {
    return find([&](const SessionPeer& peer) { return peer.isJoined() && peer.id == id; });
}

bool SessionPeers::makeRoom(const NetworkAddress& forWhom) {
    if (m_peers.size() < kMost)
        return true;
    const auto halfOpenOf = [&](const NetworkAddress& host) {
        return std::ranges::count_if(m_peers, [&](const SessionPeer& peer) {
            return peer.isHalfOpen() && peer.control.sameHost(host);
        });
    };
    if (halfOpenOf(forWhom) > 0)
        return false;
    const SessionPeer* const crowding = find(
        [&](const SessionPeer& peer) { return peer.isHalfOpen() && halfOpenOf(peer.control) > 1; });
    if (crowding)
        take(*crowding);
    return crowding;
}

SessionPeer& SessionPeers::add(SessionPeer peer) {
    return m_peers.emplace_back(std::move(peer));
}

SessionPeer SessionPeers::take(const SessionPeer& peer) {
    const auto place =
        std::ranges::find_if(m_peers, [&](const SessionPeer& one) { return &one == &peer; });
    SessionPeer taken = std::move(*place);
    m_peers.erase(place);
    return taken;
}
