#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "midi/network/NetworkAddress.h"
#include "midi/network/SessionTime.h"

/// A session has two ports beside one another; who takes part is known by both.
enum class SessionPort : std::uint8_t { control, data };

/// What a session makes happen. Called from within the session's own functions, which must not be
/// called back.
class NetworkSessionHost {
  public:
    virtual ~NetworkSessionHost() = default;
    virtual void send(SessionPort from, const NetworkAddress& to,
                      std::span<const std::uint8_t> datagram) = 0;
    /// Whether a host is on a directly attached subnet, or is this one.
    virtual bool isNear(const NetworkAddress& address) = 0;
    /// Whether the player has allowed that host in.
    virtual bool isContact(const NetworkAddress& address) = 0;

    virtual void peerJoined(std::uint32_t peer, const std::string& name,
                            const NetworkAddress& control) = 0;
    /// After the releases of all its notes.
    virtual void peerLeft(std::uint32_t peer) = 0;
    /// Waits for answer(), until askEnded(), which also follows the answer.
    virtual void asked(std::uint32_t peer, const std::string& name,
                       const NetworkAddress& control) = 0;
    virtual void askEnded(std::uint32_t peer) = 0;
    /// An invitation of ours came to nothing; one line for the player.
    virtual void inviteFailed(const NetworkAddress& control, const std::string& why) = 0;
    /// One whole message with its status byte, in the order played; `time` is that of its arrival.
    virtual void received(std::uint32_t peer, SessionTime time,
                          std::span<const std::uint8_t> message) = 0;
};
