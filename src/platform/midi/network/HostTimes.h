#pragma once

#include <algorithm>
#include <vector>

#include "midi/network/NetworkAddress.h"
#include "midi/network/SessionTime.h"

/// Hosts that something holds for, each until its time. Bounded: beyond kMost the one that would
/// end first makes room.
class HostTimes {
  public:
    static constexpr std::size_t kMost = 32;

    bool holds(const NetworkAddress& host, SessionTime now) const {
        return std::ranges::any_of(m_hosts, [&](const Host& known) {
            return known.until > now && known.address.sameHost(host);
        });
    }
    void hold(const NetworkAddress& host, SessionTime now, SessionTime until) {
        std::erase_if(m_hosts, [&](const Host& known) {
            return known.until <= now || known.address.sameHost(host);
        });
        if (m_hosts.size() == kMost)
            m_hosts.erase(std::ranges::min_element(m_hosts, {}, &Host::until));
        m_hosts.push_back({host, until});
    }

  private:
    struct Host {
        NetworkAddress address;
        SessionTime until;
    };
    std::vector<Host> m_hosts;
};
