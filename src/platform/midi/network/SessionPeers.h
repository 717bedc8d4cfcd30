#pragma once

#include <list>

#include "midi/network/SessionPeer.h"

/// Everybody who takes part or is about to, kMost at a time. A peer stays where it is in memory
/// until it is taken out.
class SessionPeers {
  public:
    static constexpr std::size_t kMost = 8;

    /// The one whose stream it is; never one whose stream is not known yet. Null if there is none.
    SessionPeer* ofStream(const NetworkAddress& from, std::uint32_t ssrc);
    /// The one that we are inviting with that token.
    SessionPeer* ofInvite(const NetworkAddress& from, std::uint32_t token);
    /// The one of that number that has joined.
    SessionPeer* joined(std::uint32_t id);

    /// Whether there is room for one more of that host. If there was none, a host that has several
    /// half-open ones loses the oldest of them to one that has none.
    bool makeRoom(const NetworkAddress& forWhom);
    SessionPeer& add(SessionPeer peer);
    SessionPeer take(const SessionPeer& peer);

    /// `what` may take out the one that it is given, and no other.
    template <typename What>
    void forEach(What what) {
        for (auto next = m_peers.begin(); next != m_peers.end();)
            what(*next++);
    }

  private:
    template <typename Which>
    SessionPeer* find(Which which);

    std::list<SessionPeer> m_peers;
};
