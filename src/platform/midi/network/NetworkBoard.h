#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "midi/MidiNetworkSession.h"
#include "midi/network/NetworkAddress.h"

/// Where the player's side of the network session leaves what it wants, and the network's thread
/// what has become of it. Shared by both: either may go first. [any thread but render]
class NetworkBoard : public std::enable_shared_from_this<NetworkBoard> {
  public:
    using ConnectionPolicy = MIDINetworkSession::ConnectionPolicy;
    using Peers = std::vector<MIDINetworkSession::Peer>;

    /// Something that the player asks for once.
    struct Order {
        enum class Kind : std::uint8_t { answer, connect, disconnect };
        Kind kind;
        std::uint32_t peer = 0;  // of answer and disconnect
        bool allowed = false;
        NetworkAddress address;  // of connect
    };
    struct Wishes {
        bool enabled = false;
        ConnectionPolicy policy = ConnectionPolicy::noOne;
        bool operator==(const Wishes&) const = default;
    };
    struct State {
        std::string localName;
        std::uint16_t port = 0;
        std::string problem;
        Peers connections;
        Peers requests;
        Peers found;
        bool operator==(const State&) const = default;
    };

    explicit NetworkBoard(std::string localName);

    Wishes wishes() const;
    /// Wakes the network's thread and tells the observers if that changes anything.
    void setWishes(const Wishes& wishes);
    /// Waits until somebody serves the board, or the session is not wanted any more; those beyond
    /// kMostOrders are dropped.
    void order(const Order& order);
    std::vector<Order> takeOrders();
    /// Whoever serves the board is called after every change of what is wanted; null when it ends.
    void setServer(std::function<void()> wake);

    State state() const;
    std::string localName() const;
    /// Also wakes the network's thread.
    void setLocalName(const std::string& name);
    /// Changes the state and tells the observers, on the main thread, if it is another one then.
    void change(const std::function<void(State&)>& how);

    /// Numbers of peers are never used twice, by whatever session serves the board: the highest
    /// that was given.
    std::uint32_t lastPeer() const { return m_lastPeer; }
    void setLastPeer(std::uint32_t peer) { m_lastPeer = peer; }

    /// Hosts that the player has allowed in; for as long as the board lives.
    void addContact(const NetworkAddress& host);
    bool isContact(const NetworkAddress& host) const;

  private:
    static constexpr std::size_t kMostOrders = 32;

    void wake();
    void tell();

    mutable std::mutex m_mutex;
    Wishes m_wishes;
    State m_state;
    std::vector<Order> m_orders;
    std::atomic<std::uint32_t> m_lastPeer{0};
    std::function<void()> m_wake;
    std::set<NetworkAddress> m_contacts;  // at port 0
    bool m_telling = false;               // the main thread is going to tell the observers
};
