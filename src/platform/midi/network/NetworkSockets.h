#pragma once

#include <array>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "midi/network/NetworkSession.h"

/// The two sockets of a session on all interfaces, for IPv4 and, where the system has it, IPv6.
/// Calls never wait. One thread at a time.
class NetworkSockets {
  public:
    /// The first control port to be tried, for others to find by its number; data takes the next.
    static constexpr std::uint16_t kFirstPort = 5004;
    static constexpr std::uint16_t kLastPort = 5036;

    NetworkSockets() = default;
    ~NetworkSockets() { close(); }
    NetworkSockets(const NetworkSockets&) = delete;
    NetworkSockets& operator=(const NetworkSockets&) = delete;

    /// Takes the first free pair from kFirstPort to kLastPort, else any. Why it could not, in one
    /// line; else empty.
    std::string open();
    void close();
    bool isOpen() const { return m_port != 0; }
    /// Of control; even. 0 while closed.
    std::uint16_t port() const { return m_port; }
    /// To be polled for input and errors.
    int descriptor(SessionPort port) const { return m_sockets[index(port)]; }

    /// What does not go out at once is lost, as it may be on the network.
    void send(SessionPort from, const NetworkAddress& to, std::span<const std::uint8_t> datagram);
    using Receiver = std::function<void(const NetworkAddress&, std::span<const std::uint8_t>)>;
    /// What waits there, up to kBatch datagrams; how many there were.
    std::size_t receive(SessionPort at, const Receiver& receiver);
    /// Where the system has found nobody listening to what was sent from there.
    void unreachable(SessionPort at, const std::function<void(const NetworkAddress&)>& told);

    static constexpr std::size_t kBatch = 64;

  private:
    static constexpr std::size_t kLongestDatagram = 65536;
    static constexpr std::size_t index(SessionPort port) { return std::size_t(port); }

    bool openPair(std::uint16_t control);
    bool openAnyPair();

    std::array<int, 2> m_sockets{-1, -1};
    std::uint16_t m_port = 0;
    int m_family = 0;
    // Written by the system, datagram by datagram; most of it is never touched.
    std::unique_ptr<std::uint8_t[]> m_memory;
};
