#include "midi/network/AttachedSubnets.h"

#include <ifaddrs.h>
#include <net/if.h>

#include <algorithm>
#include <bit>

#include "midi/network/HostAddress.h"

namespace {

constexpr SessionTime kLookEvery = kSessionSecond;
constexpr unsigned kAllBits = 128;
constexpr unsigned kMappedBits = 96;  // before an IPv4 address

/// Ones at the front of a mask.
unsigned prefixOf(const sockaddr* mask, int family) {
    // The system leaves out the family of some masks.
    sockaddr_storage whole{};
    const std::size_t bytes = family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
    std::copy_n(reinterpret_cast<const char*>(mask), bytes, reinterpret_cast<char*>(&whole));
    whole.ss_family = static_cast<sa_family_t>(family);
    const auto bits = HostAddress::fromSocket(reinterpret_cast<const sockaddr*>(&whole));
    unsigned ones = 0;
    for (std::size_t i = family == AF_INET ? kMappedBits / 8 : 0; i < bits->ip.size(); ++i) {
        ones += static_cast<unsigned>(std::countl_one(bits->ip[i]));
        if (bits->ip[i] != 0xff)
            break;
    }
    return ones;
}

/// A mask without any ones would let in everybody: only the address itself counts then.
std::optional<Subnet> subnetOf(const ifaddrs& interface) {
    const auto own = HostAddress::fromSocket(interface.ifa_addr);
    if (!own || !(interface.ifa_flags & IFF_UP))
        return {};
    Subnet subnet{own->at(0), kAllBits};
    if ((interface.ifa_flags & IFF_POINTOPOINT) || !interface.ifa_netmask)
        return subnet;
    const int family = interface.ifa_addr->sa_family;
    if (const unsigned ones = prefixOf(interface.ifa_netmask, family); ones > 0)
        subnet.prefixBits = ones + (family == AF_INET ? kMappedBits : 0);
    return subnet;
}

}  // namespace

bool AttachedSubnets::contains(const NetworkAddress& host, SessionTime now) {
    if (!m_looked || now - *m_looked >= kLookEvery) {
        m_subnets = all();
        m_looked = now;
    }
    return std::ranges::any_of(m_subnets, [&](const Subnet& one) { return one.contains(host); });
}

std::vector<Subnet> AttachedSubnets::all() {
    std::vector<Subnet> found;
    ifaddrs* interfaces = nullptr;
    if (getifaddrs(&interfaces) != 0)
        return found;
    for (const ifaddrs* one = interfaces; one; one = one->ifa_next) {
        const auto subnet = subnetOf(*one);
        if (!subnet)
            continue;
        found.push_back(*subnet);
        if (!(one->ifa_flags & IFF_POINTOPOINT))
            continue;
        if (const auto end = HostAddress::fromSocket(one->ifa_dstaddr))
            found.push_back({end->at(0), kAllBits});
    }
    freeifaddrs(interfaces);
    return found;
}
