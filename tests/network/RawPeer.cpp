#include "RawPeer.h"

#include <poll.h>

#include <chrono>

namespace {

using RawClock = std::chrono::steady_clock;
constexpr std::uint32_t kToken = 0x01020304;
constexpr std::uint32_t kSsrc = 0x0a0b0c0d;
constexpr int kInvitations = 40;
constexpr std::chrono::milliseconds kAnswerWithin{500};

void put(std::vector<std::uint8_t>& bytes, std::uint32_t number, int count) {
    for (int i = count - 1; i >= 0; --i)
        bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
}

NetworkAddress here(std::uint16_t port) {
    NetworkAddress address;
    address.ip = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff, 127, 0, 0, 1};
    address.port = port;
    return address;
}

}  // namespace

RawPeer::Bytes RawPeer::command(const char* letters, const std::string& name) const {
    Bytes bytes{0xff, 0xff, static_cast<std::uint8_t>(letters[0]),
                static_cast<std::uint8_t>(letters[1])};
    put(bytes, 2, 4);
    put(bytes, kToken, 4);
    put(bytes, kSsrc, 4);
    if (!name.empty()) {
        bytes.insert(bytes.end(), name.begin(), name.end());
        bytes.push_back(0);
    }
    return bytes;
}

bool RawPeer::join(std::uint16_t port, const std::string& name) {
    m_port = port;
    return invite(SessionPort::control, name) && invite(SessionPort::data, name);
}

/// A session that has just heard of this host lets it wait: it is invited again and again.
bool RawPeer::invite(SessionPort port, const std::string& name) {
    for (int i = 0; i < kInvitations; ++i) {
        send(port, command("IN", name));
        if (answered(port, "OK"))
            return true;
    }
    return false;
}

void RawPeer::play(const std::vector<std::uint8_t>& commands) {
    const auto now = RawClock::now().time_since_epoch() / std::chrono::microseconds(100);
    Bytes bytes{0x80, 0x61};
    put(bytes, m_sequence++, 2);
    put(bytes, static_cast<std::uint32_t>(now), 4);
    put(bytes, kSsrc, 4);
    if (commands.size() < 16)
        put(bytes, static_cast<std::uint32_t>(commands.size()), 1);
    else
        put(bytes, 0x8000 | static_cast<std::uint32_t>(commands.size()), 2);
    bytes.insert(bytes.end(), commands.begin(), commands.end());
    send(SessionPort::data, bytes);
}

void RawPeer::goodbye() {
    send(SessionPort::control, command("BY", ""));
}

void RawPeer::send(SessionPort from, const Bytes& bytes) {
    const int shift = from == SessionPort::data ? 1 : 0;
    m_sockets.send(from, here(static_cast<std::uint16_t>(m_port + shift)), bytes);
}

bool RawPeer::answered(SessionPort at, const char* letters) {
    const auto end = RawClock::now() + kAnswerWithin;
    bool found = false;
    while (!found && RawClock::now() < end) {
        pollfd readable{m_sockets.descriptor(at), POLLIN, 0};
        poll(&readable, 1, 100);
        m_sockets.receive(at, [&](const NetworkAddress&, std::span<const std::uint8_t> bytes) {
            found =
                found || (bytes.size() >= 4 && bytes[2] == letters[0] && bytes[3] == letters[1]);
        });
    }
    return found;
}
