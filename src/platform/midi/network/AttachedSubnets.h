#pragma once

#include <optional>
#include <vector>

#include "midi/network/NetworkSession.h"
#include "midi/network/Subnet.h"

/// Which hosts are near: this one, those that share a subnet with one of its interfaces, and those
/// at the other end of a line. One thread at a time.
class AttachedSubnets {
  public:
    /// The interfaces are looked at once a second at most.
    bool contains(const NetworkAddress& host, SessionTime now);

    /// As the interfaces are now. [any thread but render]
    static std::vector<Subnet> all();

  private:
    std::vector<Subnet> m_subnets;
    std::optional<SessionTime> m_looked;
};
