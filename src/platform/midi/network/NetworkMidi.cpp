#include "midi/network/NetworkMidi.h"

#include <poll.h>

#include <algorithm>
#include <random>

#include "log/Log.h"
#include "midi/MidiClock.h"
#include "midi/network/HostAddress.h"

namespace {

constexpr SessionTime kTryAgainAfter = 3 * kSessionSecond;

SessionTime sessionTime() {
    return static_cast<SessionTime>(midiNow());
}

std::uint32_t randomNumber() {
    static thread_local std::random_device device;
    return static_cast<std::uint32_t>(device());
}

timespec lengthOf(SessionTime time) {
    timespec length{};
    length.tv_sec = static_cast<time_t>(time / kSessionSecond);
    length.tv_nsec = static_cast<long>(time % kSessionSecond);
    return length;
}

}  // namespace

NetworkMidi::NetworkMidi(std::shared_ptr<NetworkBoard> board)
    : m_board(std::move(board)), m_heard([this](std::uint32_t peer, const MIDIPacketList& list) {
          if (const auto lane = m_lanes.hearing(peer))
              m_host->received(*lane, list);
      }) {}

void NetworkMidi::start(MidiBackendHost& host, std::size_t number) {
    m_host = &host;
    m_number = number;
    m_board->setServer([this] { m_wake.raise(); });
    m_thread = std::thread([this] { run(); });
}

void NetworkMidi::stop() {
    if (!m_thread.joinable())
        return;
    m_board->setServer(nullptr);
    m_stopping = true;
    m_wake.raise();
    m_thread.join();
}

OSStatus NetworkMidi::send(MIDIEndpointRef lane, const MIDIPacketList& list) {
    if (!m_lanes.queue(lane, list))
        return kMIDIMessageSendErr;
    m_wake.raise();
    return noErr;
}

void NetworkMidi::run() {
    while (!m_stopping) {
        settle();
        SessionTime due = m_tryAgain ? m_tryAgain : kNever;
        if (m_session) {
            sendQueued();
            due = m_session->turn(sessionTime());
        }
        tell();
        sleepUntil(due);
    }
    closeSession();
}

/// Makes it what is wanted.
void NetworkMidi::settle() {
    const NetworkBoard::Wishes wishes = m_board->wishes();
    if (!wishes.enabled)
        closeSession();
    else if (!m_session && sessionTime() >= m_tryAgain)
        openSession();
    if (!m_session)
        return;
    m_session->setName(m_board->localName());
    for (const NetworkBoard::Order& order : m_board->takeOrders())
        obey(order);
}

void NetworkMidi::openSession() {
    const std::string problem = m_sockets.open();
    if (!problem.empty() && m_tryAgain == 0)
        Log::line("%s", problem.c_str());
    m_board->change([&](NetworkBoard::State& state) {
        state.port = m_sockets.port();
        state.problem = problem;
    });
    m_tryAgain = problem.empty() ? 0 : sessionTime() + kTryAgainAfter;
    if (!problem.empty())
        return;
    const std::string name = m_board->localName();
    m_session.emplace(
        static_cast<NetworkSessionHost&>(*this),
        NetworkSession::Identity{name, randomNumber(), randomNumber, m_board->lastPeer()});
    m_directory.emplace(m_board, name, m_sockets.port());
}

void NetworkMidi::closeSession() {
    m_tryAgain = 0;
    if (m_session) {
        m_session->close(sessionTime());
        m_session.reset();
        m_requests.clear();
        m_changed = true;
        tell();
        m_directory.reset();
        m_sockets.close();
    }
    m_board->change([](NetworkBoard::State& state) {
        state.port = 0;
        state.problem.clear();
        state.found.clear();
    });
}

void NetworkMidi::obey(const NetworkBoard::Order& order) {
    const SessionTime now = sessionTime();
    switch (order.kind) {
        case NetworkBoard::Order::Kind::answer: {
            const auto asker = std::ranges::find(m_requests, order.peer, &Guest::peer);
            if (asker != m_requests.end() && order.allowed)
                m_board->addContact(asker->control);
            m_session->answer(order.peer, order.allowed, now);
            break;
        }
        case NetworkBoard::Order::Kind::connect:
            m_session->invite(order.address, now);
            break;
        case NetworkBoard::Order::Kind::disconnect:
            m_session->disconnect(order.peer, now);
            break;
    }
}

void NetworkMidi::sendQueued() {
    for (const NetworkLanes::Outgoing& out : m_lanes.takeQueued())
        m_session->send(out.peer, out.bytes, sessionTime());
}

void NetworkMidi::sleepUntil(SessionTime due) {
    const SessionTime now = sessionTime();
    const timespec length = lengthOf(due > now ? due - now : 0);
    // A descriptor that is not open is -1, which poll passes over.
    std::array<pollfd, 3> watched{{{m_wake.descriptor(), POLLIN, 0},
                                   {m_sockets.descriptor(SessionPort::control), POLLIN, 0},
                                   {m_sockets.descriptor(SessionPort::data), POLLIN, 0}}};
    if (ppoll(watched.data(), watched.size(), due == kNever ? nullptr : &length, nullptr) <= 0)
        return;
    if (watched[0].revents)
        m_wake.clear();
    // Who has come since the player closed the door is not let in by an older wish.
    if (m_session)
        m_session->setPolicy(m_board->wishes().policy);
    m_nap = 0;
    for (const SessionPort port : {SessionPort::control, SessionPort::data}) {
        const short events = watched[1 + std::size_t(port)].revents;
        if (events & POLLERR)
            m_sockets.unreachable(port, [this](const NetworkAddress& to) {
                m_session->unreachable(to, sessionTime());
            });
        if (events & POLLIN)
            receiveFrom(port);
    }
    m_heard.flush();
    const timespec nap = lengthOf(m_nap);
    if (m_nap != 0)
        nanosleep(&nap, nullptr);
}

void NetworkMidi::receiveFrom(SessionPort port) {
    const SessionTime now = sessionTime();
    const std::size_t count = m_sockets.receive(
        port, [&](const NetworkAddress& from, std::span<const std::uint8_t> bytes) {
            m_session->receive(port, from, bytes, now);
        });
    const SessionTime nap = m_brake.came(count, now);
    // A full batch means that more is waiting already.
    m_nap = count < NetworkSockets::kBatch ? std::max(m_nap, nap) : 0;
}

void NetworkMidi::send(SessionPort from, const NetworkAddress& to,
                       std::span<const std::uint8_t> datagram) {
    m_sockets.send(from, to, datagram);
}

bool NetworkMidi::isNear(const NetworkAddress& address) {
    return m_near.contains(address, sessionTime());
}

bool NetworkMidi::isContact(const NetworkAddress& address) {
    return m_board->isContact(address);
}

void NetworkMidi::peerJoined(std::uint32_t peer, const std::string& name,
                             const NetworkAddress& control) {
    m_connections.push_back({peer, name, control});
    m_board->setLastPeer(std::max(peer, m_board->lastPeer()));
    m_changed = m_portsChanged = true;
    Log::line("%s takes part in MIDI over the network", name.c_str());
}

void NetworkMidi::peerLeft(std::uint32_t peer) {
    std::erase_if(m_connections, [peer](const Guest& guest) { return guest.peer == peer; });
    m_changed = m_portsChanged = true;
}

void NetworkMidi::asked(std::uint32_t peer, const std::string& name,
                        const NetworkAddress& control) {
    m_requests.push_back({peer, name, control});
    m_board->setLastPeer(std::max(peer, m_board->lastPeer()));
    m_changed = true;
}

void NetworkMidi::askEnded(std::uint32_t peer) {
    std::erase_if(m_requests, [peer](const Guest& guest) { return guest.peer == peer; });
    m_changed = true;
}

void NetworkMidi::inviteFailed(const NetworkAddress& control, const std::string& why) {
    const std::string problem = "Not connected to " + HostAddress::text(control) + ". " + why;
    Log::line("%s", problem.c_str());
    m_board->change([&](NetworkBoard::State& state) { state.problem = problem; });
}

void NetworkMidi::received(std::uint32_t peer, SessionTime time,
                           std::span<const std::uint8_t> message) {
    m_heard.add(peer, time, message);
}

/// What was heard comes first: the releases of who has left are heard before its source vanishes.
/// Whoever sees a source finds its peer on the board.
void NetworkMidi::tell() {
    m_heard.flush();
    if (std::exchange(m_changed, false))
        m_board->change([this](NetworkBoard::State& state) {
            state.connections = shown(m_connections);
            state.requests = shown(m_requests);
        });
    if (std::exchange(m_portsChanged, false))
        m_host->portsChanged(m_number, ports());
}

std::vector<MidiBackendPort> NetworkMidi::ports() const {
    std::vector<MidiBackendPort> all;
    for (const Guest& guest : m_connections) {
        MIDIProperties entity;
        entity.emplace(kMIDIPropertyNetworkSession, HostAddress::text(guest.control));
        all.push_back({guest.name, guest.peer, guest.name, true, entity});
        all.push_back({guest.name, guest.peer, guest.name, false, entity});
    }
    return all;
}

NetworkBoard::Peers NetworkMidi::shown(const Guests& guests) {
    NetworkBoard::Peers all;
    for (const Guest& guest : guests)
        all.push_back({guest.peer, guest.name, HostAddress::text(guest.control)});
    return all;
}
