#include "LossyProxy.h"

#include <poll.h>

#include <array>
#include <utility>

LossyProxy::LossyProxy(std::uint16_t port, unsigned seed)
    : m_there{m_front, m_back, {}, {}}, m_home{m_back, m_front, {}, {}}, m_random(seed) {
    m_front.open();
    m_back.open();
    m_there.to.ip = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff, 127, 0, 0, 1};
    m_there.to.port = port;
    m_thread = std::thread([this] { run(); });
}

LossyProxy::~LossyProxy() {
    m_stopping = true;
    m_thread.join();
}

void LossyProxy::setFaults(const Faults& faults) {
    m_losing = faults.lost;
    m_doubling = faults.doubled;
    m_delaying = faults.late;
}

void LossyProxy::run() {
    const auto watch = [](NetworkSockets& sockets, SessionPort port) {
        return pollfd{sockets.descriptor(port), POLLIN, 0};
    };
    while (!m_stopping) {
        std::array<pollfd, 4> watched{
            watch(m_front, SessionPort::control), watch(m_front, SessionPort::data),
            watch(m_back, SessionPort::control), watch(m_back, SessionPort::data)};
        poll(watched.data(), watched.size(), 50);
        for (const SessionPort port : {SessionPort::control, SessionPort::data}) {
            forward(m_there, port);
            forward(m_home, port);
        }
    }
}

void LossyProxy::forward(Side& side, SessionPort port) {
    side.in.receive(port, [&](const NetworkAddress& from, std::span<const std::uint8_t> datagram) {
        if (&side == &m_there && port == SessionPort::control)
            m_home.to = from;
        pass(side, port, datagram);
    });
    side.in.unreachable(port, [](const NetworkAddress&) {});
}

void LossyProxy::pass(Side& side, SessionPort port, std::span<const std::uint8_t> datagram) {
    if (port == SessionPort::control)
        return send(side, port, datagram);
    if (chance(m_losing)) {
        ++m_lost;
        return;
    }
    if (side.late.empty() && chance(m_delaying)) {
        side.late.assign(datagram.begin(), datagram.end());
        return;
    }
    send(side, port, datagram);
    if (chance(m_doubling))
        send(side, port, datagram);
    if (!side.late.empty())
        send(side, port, std::exchange(side.late, {}));
}

void LossyProxy::send(Side& side, SessionPort port, std::span<const std::uint8_t> datagram) {
    const int shift = port == SessionPort::data ? 1 : 0;
    side.out.send(port, side.to.at(static_cast<std::uint16_t>(side.to.port + shift)), datagram);
}
