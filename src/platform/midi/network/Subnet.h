#pragma once

#include "midi/network/NetworkAddress.h"

/// The hosts that an interface reaches without a router.
struct Subnet {
    NetworkAddress address;   // of the interface, or of the other end of a line
    unsigned prefixBits = 0;  // of the 128 of an address; those that all hosts share

    bool contains(const NetworkAddress& host) const {
        if (address.scope != 0 && host.scope != 0 && address.scope != host.scope)
            return false;
        unsigned left = prefixBits;
        for (std::size_t i = 0; i < address.ip.size() && left > 0; ++i) {
            const unsigned bits = left < 8 ? left : 8;
            const unsigned mask = 0xff00u >> bits & 0xffu;
            if ((address.ip[i] ^ host.ip[i]) & mask)
                return false;
            left -= bits;
        }
        return true;
    }
};
