#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "midi/network/NetworkSession.h"

/// Sessions on a network with a clock of its own, and a wire that may lose, delay and repeat.
namespace simulated {

using Bytes = std::vector<std::uint8_t>;

inline NetworkAddress address(std::uint8_t host, std::uint16_t port = 5004) {
    return {{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 10, 0, 0, host}, 0, port};
}

struct Datagram {
    NetworkAddress from, to;
    Bytes bytes;
};

/// One session, and everything that it makes happen.
class Station final : public NetworkSessionHost {
  public:
    Station(std::uint8_t number, std::function<void(Datagram)> wire, std::string name = "Station")
        : m_number(number), m_wire(std::move(wire)), m_random(number) {
        session = std::make_unique<NetworkSession>(
            *this, NetworkSession::Identity{std::move(name), 0x1000u + number,
                                            [this] { return std::uint32_t(m_random()); }});
    }

    void send(SessionPort from, const NetworkAddress& to,
              std::span<const std::uint8_t> datagram) override {
        m_wire({address(m_number, from == SessionPort::control ? 5004 : 5005), to,
                Bytes(datagram.begin(), datagram.end())});
    }
    bool isNear(const NetworkAddress& other) override { return other.ip[15] < 200; }
    bool isContact(const NetworkAddress& other) override { return contacts.contains(other.ip[15]); }
    void peerJoined(std::uint32_t peer, const std::string& name, const NetworkAddress&) override {
        peers[peer] = name;
    }
    void peerLeft(std::uint32_t peer) override {
        heldAtLeaving += held.size();
        held.clear();
        peers.erase(peer);
    }
    void asked(std::uint32_t peer, const std::string& name, const NetworkAddress&) override {
        asks[peer] = name;
    }
    void askEnded(std::uint32_t peer) override { asks.erase(peer); }
    void inviteFailed(const NetworkAddress&, const std::string& why) override { failed = why; }
    void received(std::uint32_t peer, SessionTime, std::span<const std::uint8_t> message) override {
        messages.emplace_back(message.begin(), message.end());
        if (message[0] >> 4 != 8 && message[0] >> 4 != 9)
            return;
        const auto note = std::tuple(peer, message[0] & 0x0F, message[1]);
        if (message[0] >> 4 == 9 && message[2] != 0)
            held.insert(note);
        else
            held.erase(note);
    }

    std::unique_ptr<NetworkSession> session;
    std::map<std::uint32_t, std::string> peers, asks;
    std::set<std::uint8_t> contacts;
    std::set<std::tuple<std::uint32_t, int, int>> held;
    std::vector<Bytes> messages;
    std::size_t heldAtLeaving = 0;
    std::string failed;

  private:
    std::uint8_t m_number;
    std::function<void(Datagram)> m_wire;
    std::mt19937 m_random;
};

class Network {
  public:
    Station& add(std::uint8_t number, std::string name = "Station") {
        auto wire = [this](Datagram datagram) { post(std::move(datagram)); };
        m_stations[number] = std::make_unique<Station>(number, wire, std::move(name));
        return *m_stations[number];
    }
    /// Nobody hears it any more, nor is it called.
    void silence(std::uint8_t number) { m_stations.erase(number); }

    /// When each copy of a datagram arrives; none if it is lost.
    std::function<std::vector<SessionTime>()> fate = [] { return std::vector<SessionTime>{1000}; };
    /// Sees everything that is sent.
    std::function<void(const Datagram&)> seen = [](const Datagram&) {};
    SessionTime now = 1000 * kSessionSecond;

    void post(Datagram datagram) {
        seen(datagram);
        for (const SessionTime delay : fate())
            m_flying.emplace(now + delay, datagram);
    }
    void run(SessionTime duration) {
        const SessionTime end = now + duration;
        for (SessionTime next = turn(); next <= end; next = turn()) {
            now = std::max(now, next);
            while (!m_flying.empty() && m_flying.begin()->first <= now)
                deliver(m_flying.extract(m_flying.begin()).mapped());
        }
        now = end;
        turn();
    }

  private:
    SessionTime turn() {
        SessionTime next = m_flying.empty() ? kNever : m_flying.begin()->first;
        for (auto& [number, station] : m_stations)
            next = std::min(next, station->session->turn(now));
        return m_flying.empty() ? next : std::min(next, m_flying.begin()->first);
    }
    void deliver(const Datagram& datagram) {
        const auto station = m_stations.find(datagram.to.ip[15]);
        if (station != m_stations.end() && (datagram.to.port & ~1) == 5004)
            station->second->session->receive(
                datagram.to.port == 5004 ? SessionPort::control : SessionPort::data, datagram.from,
                datagram.bytes, now);
    }

    std::map<std::uint8_t, std::unique_ptr<Station>> m_stations;
    std::multimap<SessionTime, Datagram> m_flying;
};

}  // namespace simulated
