#pragma once

#include <memory>
#include <string>

#include "midi/network/NetworkBoard.h"

/// Announces our session and finds others by DNS-SD, wherever the daemon for that runs, again
/// after each of its returns; where it does not, quietly nothing. It has a thread of its own, for
/// the daemon may keep its callers waiting.
class NetworkDirectory {
  public:
    static constexpr const char* kServiceType = "_apple-midi._udp";

    /// The board is told which others there are, and our name if it had to be another one.
    NetworkDirectory(std::shared_ptr<NetworkBoard> board, const std::string& name,
                     std::uint16_t port);
    /// Takes the announcement back. A thread that hangs in the daemon's library is left to end by
    /// itself.
    ~NetworkDirectory();
    NetworkDirectory(const NetworkDirectory&) = delete;
    NetworkDirectory& operator=(const NetworkDirectory&) = delete;

  private:
    class Worker;
    std::shared_ptr<Worker> m_worker;
};
