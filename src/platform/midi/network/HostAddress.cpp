#include "midi/network/HostAddress.h"

#include <arpa/inet.h>
#include <net/if.h>
#include <netdb.h>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace {

constexpr std::array<std::uint8_t, 12> kMapped{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff};

bool isLinkLocal(const NetworkAddress& address) {
    return address.ip[0] == 0xfe && (address.ip[1] & 0xc0) == 0x80;
}

std::optional<std::uint16_t> portFrom(std::string_view text) {
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && port != 0 ? std::optional(port) : std::nullopt;
}

std::optional<NetworkAddress> lookUp(const HostAddress::Written& written, int flags) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_DGRAM;
    hints.ai_flags = flags;
    addrinfo* all = nullptr;
    if (getaddrinfo(written.host.c_str(), nullptr, &hints, &all) != 0)
        return {};
    std::optional<NetworkAddress> found;
    for (const addrinfo* one = all; one; one = one->ai_next) {
        if (!found || one->ai_family == AF_INET)
            found = HostAddress::fromSocket(one->ai_addr);
        if (one->ai_family == AF_INET)
            break;
    }
    freeaddrinfo(all);
    return found ? std::optional(found->at(written.port)) : std::nullopt;
}

}  // namespace

std::optional<HostAddress::Written> HostAddress::takenApart(const std::string& text) {
    const bool bracketed = text.starts_with('[');
    const std::size_t close = bracketed ? text.find(']') : 0;
    const auto colons = std::ranges::count(text, ':');
    if (close == std::string::npos)
        return {};
    Written written;
    std::size_t end = bracketed ? close + 1 : colons == 1 ? text.find(':') : text.size();
    written.host = bracketed ? text.substr(1, close - 1) : text.substr(0, end);
    if (written.host.empty() || written.host.find_first_of(" \t[]/") != std::string::npos)
        return {};
    if (end == text.size())
        return written;
    const auto port = portFrom(std::string_view(text).substr(end + 1));
    if (text[end] != ':' || !port)
        return {};
    written.port = *port;
    return written;
}

std::string HostAddress::text(const NetworkAddress& address) {
    std::array<char, INET6_ADDRSTRLEN> number{};
    const std::string port = ':' + std::to_string(address.port);
    if (isIPv4(address)) {
        inet_ntop(AF_INET, address.ip.data() + kMapped.size(), number.data(), number.size());
        return number.data() + port;
    }
    inet_ntop(AF_INET6, address.ip.data(), number.data(), number.size());
    std::array<char, IF_NAMESIZE> interface {};
    std::string scope;
    if (address.scope != 0)
        scope = if_indextoname(address.scope, interface.data())
                    ? '%' + std::string(interface.data())
                    : '%' + std::to_string(address.scope);
    return '[' + std::string(number.data()) + scope + ']' + port;
}

std::optional<NetworkAddress> HostAddress::find(const Written& written) {
    return lookUp(written, 0);
}

std::optional<NetworkAddress> HostAddress::read(const Written& written) {
    return lookUp(written, AI_NUMERICHOST);
}

std::optional<NetworkAddress> HostAddress::fromSocket(const sockaddr* address) {
    NetworkAddress result;
    if (address && address->sa_family == AF_INET) {
        sockaddr_in four;
        std::memcpy(&four, address, sizeof four);
        std::ranges::copy(kMapped, result.ip.begin());
        std::memcpy(result.ip.data() + kMapped.size(), &four.sin_addr, sizeof four.sin_addr);
        result.port = ntohs(four.sin_port);
        return result;
    }
    if (!address || address->sa_family != AF_INET6)
        return {};
    sockaddr_in6 six;
    std::memcpy(&six, address, sizeof six);
    std::memcpy(result.ip.data(), &six.sin6_addr, result.ip.size());
    result.port = ntohs(six.sin6_port);
    result.scope = isLinkLocal(result) ? six.sin6_scope_id : 0;
    return result;
}

socklen_t HostAddress::toSocket(const NetworkAddress& address, int family,
                                sockaddr_storage& result) {
    if (family == AF_INET6) {
        sockaddr_in6 six{};
        six.sin6_family = AF_INET6;
        six.sin6_port = htons(address.port);
        six.sin6_scope_id = address.scope;
        std::memcpy(&six.sin6_addr, address.ip.data(), address.ip.size());
        std::memcpy(&result, &six, sizeof six);
        return sizeof six;
    }
    if (!isIPv4(address))
        return 0;
    sockaddr_in four{};
    four.sin_family = AF_INET;
    four.sin_port = htons(address.port);
    std::memcpy(&four.sin_addr, address.ip.data() + kMapped.size(), sizeof four.sin_addr);
    std::memcpy(&result, &four, sizeof four);
    return sizeof four;
}

bool HostAddress::isIPv4(const NetworkAddress& address) {
    return std::equal(kMapped.begin(), kMapped.end(), address.ip.begin());
}
