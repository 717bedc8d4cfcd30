#pragma once

#include <array>
#include <compare>
#include <cstdint>

/// One host and port. IPv4 addresses are mapped into IPv6 ones (RFC 4291, 2.5.5.2).
struct NetworkAddress {
    std::array<std::uint8_t, 16> ip{};
    std::uint32_t scope = 0;  // interface of a link-local address, else 0
    std::uint16_t port = 0;

    auto operator<=>(const NetworkAddress&) const = default;
    bool sameHost(const NetworkAddress& other) const {
        return ip == other.ip && scope == other.scope;
    }
    /// The same host at another port.
    NetworkAddress at(std::uint16_t otherPort) const { return {ip, scope, otherPort}; }
};
