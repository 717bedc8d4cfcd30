#pragma once

#include <netinet/in.h>
#include <sys/socket.h>

#include <optional>
#include <string>

#include "midi/network/NetworkAddress.h"

/// Addresses as the system and as people write them. [any thread but render]
namespace HostAddress {

inline constexpr std::uint16_t kDefaultPort = 5004;

/// HOST, HOST:PORT, [IPv6] or [IPv6]:PORT taken apart. Nothing if the port is none.
struct Written {
    std::string host;
    std::uint16_t port = kDefaultPort;
};
std::optional<Written> takenApart(const std::string& text);

/// "192.168.1.7:5004", "[fe80::1%eth0]:5004".
std::string text(const NetworkAddress& address);

/// The address of a host, written as a number or by name. Of several it is the first IPv4 one: many
/// MIDI devices speak nothing else. May wait for the network. Nothing if there is none.
std::optional<NetworkAddress> find(const Written& written);
/// The same for numbers only, which waits for nothing.
std::optional<NetworkAddress> read(const Written& written);

/// Of an IPv4 or IPv6 socket; nothing for others.
std::optional<NetworkAddress> fromSocket(const sockaddr* address);
/// For a socket of that family. The bytes of it that count; 0 if the family has no such address.
socklen_t toSocket(const NetworkAddress& address, int family, sockaddr_storage& result);
/// Whether it stands for an IPv4 address.
bool isIPv4(const NetworkAddress& address);

}  // namespace HostAddress
