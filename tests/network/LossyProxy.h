#pragma once

#include <atomic>
#include <random>
#include <thread>

#include "midi/network/NetworkSockets.h"

/// A bad network between two sessions of this machine: whoever sends to its port reaches the
/// session behind it, and the other way round. What passes the data ports is lost, doubled or
/// comes late, as a seed has it.
class LossyProxy {
  public:
    struct Faults {
        double lost = 0;
        double doubled = 0;
        double late = 0;  // goes out behind the one after it
    };

    /// `port` is the control port of the session behind it.
    LossyProxy(std::uint16_t port, unsigned seed);
    ~LossyProxy();

    std::uint16_t port() const { return m_front.port(); }
    void setFaults(const Faults& faults);
    std::size_t lost() const { return m_lost; }

  private:
    struct Side {
        NetworkSockets& in;
        NetworkSockets& out;
        NetworkAddress to;  // control port of who is behind `out`
        std::vector<std::uint8_t> late;
    };
    void run();
    void forward(Side& side, SessionPort port);
    void pass(Side& side, SessionPort port, std::span<const std::uint8_t> datagram);
    void send(Side& side, SessionPort port, std::span<const std::uint8_t> datagram);
    bool chance(double share) { return std::uniform_real_distribution<>()(m_random) < share; }

    NetworkSockets m_front;  // to whoever invites
    NetworkSockets m_back;   // to the session behind
    Side m_there;
    Side m_home;
    std::mt19937 m_random;
    std::atomic<double> m_losing{0}, m_doubling{0}, m_delaying{0};
    std::atomic<std::size_t> m_lost{0};
    std::atomic<bool> m_stopping{false};
    std::thread m_thread;
};
