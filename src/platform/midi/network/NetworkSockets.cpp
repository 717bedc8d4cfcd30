#include "midi/network/NetworkSockets.h"

#include <linux/errqueue.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "midi/network/HostAddress.h"

namespace {

// Room for a storm of 100,000 datagrams a second while the thread waits for its turn. The system
// may grant less to whoever is not its administrator.
constexpr int kReceiveBytes = 8 << 20;
constexpr int kPairsTried = 64;
constexpr std::uint16_t kLastControlPort = 65534;

void setOption(int socket, int level, int option, int value) {
    setsockopt(socket, level, option, &value, sizeof value);
}

int makeSocket(int family) {
    const int made = socket(family, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (made < 0)
        return made;
    if (family == AF_INET6) {
        setOption(made, IPPROTO_IPV6, IPV6_V6ONLY, 0);
        setOption(made, IPPROTO_IPV6, IPV6_RECVERR, 1);
    }
    setOption(made, IPPROTO_IP, IP_RECVERR, 1);
    setOption(made, SOL_SOCKET, SO_RCVBUF, kReceiveBytes);
    setOption(made, SOL_SOCKET, SO_RCVBUFFORCE, kReceiveBytes);
    return made;
}

/// A socket on all interfaces, or -1. Port 0 is any.
int boundSocket(int family, std::uint16_t port) {
    const int made = makeSocket(family);
    if (made < 0)
        return made;
    sockaddr_storage any{};
    // All zeros is "any" in either family, once the family is set; so is the mapped any address.
    NetworkAddress address;
    address.port = port;
    if (family == AF_INET)
        address.ip[10] = address.ip[11] = 0xff;
    const socklen_t length = HostAddress::toSocket(address, family, any);
    if (bind(made, reinterpret_cast<const sockaddr*>(&any), length) == 0)
        return made;
    const int why = errno;
    close(made);
    errno = why;
    return -1;
}

/// An error that is left would wake whoever polls at once.
void takeError(int socket) {
    int error = 0;
    socklen_t length = sizeof error;
    getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &length);
}

std::uint16_t portOf(int socket) {
    sockaddr_storage own{};
    socklen_t length = sizeof own;
    getsockname(socket, reinterpret_cast<sockaddr*>(&own), &length);
    const auto address = HostAddress::fromSocket(reinterpret_cast<const sockaddr*>(&own));
    return address ? address->port : std::uint16_t{0};
}

/// Whether a message of the error queue says that nobody listens at the port.
bool saysUnreachable(msghdr& message) {
    for (cmsghdr* part = CMSG_FIRSTHDR(&message); part; part = CMSG_NXTHDR(&message, part)) {
        const bool four = part->cmsg_level == IPPROTO_IP && part->cmsg_type == IP_RECVERR;
        const bool six = part->cmsg_level == IPPROTO_IPV6 && part->cmsg_type == IPV6_RECVERR;
        if (!four && !six)
            continue;
        sock_extended_err error;
        std::memcpy(&error, CMSG_DATA(part), sizeof error);
        if (error.ee_errno == ECONNREFUSED)
            return true;
    }
    return false;
}

}  // namespace

std::string NetworkSockets::open() {
    if (isOpen())
        return {};
    m_family = AF_INET6;
    const int probe = boundSocket(AF_INET6, 0);
    if (probe >= 0)
        ::close(probe);
    else
        m_family = AF_INET;
    bool opened = false;
    for (std::uint16_t port = kFirstPort; port <= kLastPort && !opened; port += 2)
        opened = openPair(port);
    if (!opened && !openAnyPair())
        return "MIDI over the network cannot be opened: " + std::string(std::strerror(errno)) + '.';
    if (!m_memory)
        m_memory.reset(new std::uint8_t[kBatch * kLongestDatagram]);
    return {};
}

bool NetworkSockets::openPair(std::uint16_t control) {
    m_sockets[0] = boundSocket(m_family, control);
    if (m_sockets[0] < 0)
        return false;
    const std::uint16_t port = portOf(m_sockets[0]);
    if (port % 2 == 0 && port <= kLastControlPort)
        m_sockets[1] = boundSocket(m_family, static_cast<std::uint16_t>(port + 1));
    if (m_sockets[1] >= 0) {
        m_port = port;
        return true;
    }
    close();
    return false;
}

bool NetworkSockets::openAnyPair() {
    for (int i = 0; i < kPairsTried; ++i) {
        if (openPair(0))
            return true;
    }
    return false;
}

void NetworkSockets::close() {
    const int why = errno;
    for (int& one : m_sockets) {
        if (one >= 0)
            ::close(one);
        one = -1;
    }
    m_port = 0;
    errno = why;
}

void NetworkSockets::send(SessionPort from, const NetworkAddress& to,
                          std::span<const std::uint8_t> datagram) {
    sockaddr_storage address{};
    const socklen_t length = HostAddress::toSocket(to, m_family, address);
    if (!isOpen() || length == 0)
        return;
    const auto attempt = [&] {
        return sendto(descriptor(from), datagram.data(), datagram.size(), MSG_NOSIGNAL,
                      reinterpret_cast<const sockaddr*>(&address), length);
    };
    // The first answer may be about an earlier datagram that nobody has received.
    if (attempt() < 0 && errno == ECONNREFUSED)
        attempt();
}

std::size_t NetworkSockets::receive(SessionPort at, const Receiver& receiver) {
    std::array<sockaddr_storage, kBatch> addresses;
    std::array<iovec, kBatch> parts;
    std::array<mmsghdr, kBatch> messages{};
    for (std::size_t i = 0; i < kBatch; ++i) {
        parts[i] = {&m_memory[i * kLongestDatagram], kLongestDatagram};
        messages[i].msg_hdr.msg_name = &addresses[i];
        messages[i].msg_hdr.msg_namelen = sizeof addresses[i];
        messages[i].msg_hdr.msg_iov = &parts[i];
        messages[i].msg_hdr.msg_iovlen = 1;
    }
    const int count = recvmmsg(descriptor(at), messages.data(), kBatch, MSG_DONTWAIT, nullptr);
    for (std::size_t i = 0; count > 0 && i < static_cast<std::size_t>(count); ++i) {
        const auto from = HostAddress::fromSocket(reinterpret_cast<const sockaddr*>(&addresses[i]));
        if (from)
            receiver(*from, {&m_memory[i * kLongestDatagram], messages[i].msg_len});
    }
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void NetworkSockets::unreachable(SessionPort at,
                                 const std::function<void(const NetworkAddress&)>& told) {
    for (;;) {
        sockaddr_storage destination{};
        std::array<std::uint8_t, 1> quoted;
        alignas(cmsghdr) std::array<std::uint8_t, 512> about;
        iovec part{quoted.data(), quoted.size()};
        msghdr message{};
        message.msg_name = &destination;
        message.msg_namelen = sizeof destination;
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        message.msg_control = about.data();
        message.msg_controllen = about.size();
        if (recvmsg(descriptor(at), &message, MSG_ERRQUEUE | MSG_DONTWAIT) < 0)
            return takeError(descriptor(at));
        const auto to = HostAddress::fromSocket(reinterpret_cast<const sockaddr*>(&destination));
        if (to && saysUnreachable(message))
            told(*to);
    }
}
