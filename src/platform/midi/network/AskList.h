#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "midi/network/NetworkSessionHost.h"

/// Invitations that wait for the player: one for each host, kMost in all. Each lasts as long as it
/// is repeated, and kPatience beyond.
class AskList {
  public:
    static constexpr std::size_t kMost = 8;
    static constexpr SessionTime kPatience = 30 * kSessionSecond;

    struct Ask {
        std::uint32_t id = 0;
        std::uint32_t token = 0;
        std::uint32_t ssrc = 0;
        std::string name{};
        NetworkAddress control{};
        SessionTime until = 0;
    };

    explicit AskList(NetworkSessionHost& host) : m_host(host) {}

    bool knows(const NetworkAddress& host) const;
    bool isFull() const { return m_asks.size() >= kMost; }
    void add(Ask ask);
    /// The same invitation once more.
    void repeat(const NetworkAddress& from, std::uint32_t ssrc, std::uint32_t token,
                SessionTime now);
    std::optional<Ask> take(std::uint32_t id);
    /// One that has been withdrawn or that nobody listens for any more.
    void end(const NetworkAddress& from, std::uint32_t ssrc);
    void endAt(const NetworkAddress& control);
    std::vector<Ask> takeAll();
    /// Ends those that have waited too long; when the next one will have.
    SessionTime turn(SessionTime now);

  private:
    template <typename Which>
    void endIf(Which which);

    NetworkSessionHost& m_host;
    std::vector<Ask> m_asks;
};
