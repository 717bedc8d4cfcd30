#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class NetworkBoard;

/// Posted on the main thread after any change of the session.
inline constexpr const char* kMIDINetworkSessionChanged = "MIDINetworkSessionChangedNotification";

/// The system's one session of MIDI over the network: whether it is open, who may take part and
/// who does. It is open while it is enabled and a MIDI client lives. Calls state what is wanted and
/// never wait. [main]
class MIDINetworkSession {
  public:
    /// Who may connect without being asked for. Hosts beyond the directly attached subnets never
    /// may.
    enum class ConnectionPolicy : std::int32_t {
        noOne = 0,
        hostsInContactsList = 1,  // whom the player has allowed in since the start; others ask
        anyone = 2,
    };
    /// Somebody at the other end. Names are plain text of at most 63 bytes.
    struct Peer {
        std::uint32_t id = 0;  // never used twice; 0 for one that was only found
        std::string name;
        std::string address;  // as connect() takes it: "192.168.1.7:5004", "[fe80::1%eth0]:5004"

        bool operator==(const Peer&) const = default;
    };

    static MIDINetworkSession& defaultSession();
    /// One of its own, for whoever serves that board.
    explicit MIDINetworkSession(std::shared_ptr<NetworkBoard> board);
    /// Where the calls leave what is wanted.
    const std::shared_ptr<NetworkBoard>& board() const { return m_board; }

    bool isEnabled() const;
    void setEnabled(bool enabled);
    ConnectionPolicy connectionPolicy() const;
    void setConnectionPolicy(ConnectionPolicy policy);

    /// What others see.
    std::string localName() const;
    /// The control port, 0 while it is not open. Data goes through the next one.
    std::uint16_t port() const;
    /// Why it is not open though it should be, or why the latest invitation came to nothing, in one
    /// line; else empty.
    std::string problem() const;

    /// Who takes part.
    std::vector<Peer> connections() const;
    /// Who has asked to and waits for the player.
    std::vector<Peer> requests() const;
    /// Sessions announced nearby that do not take part, in the order of their names.
    std::vector<Peer> found() const;

    void answer(std::uint32_t request, bool allowed);
    /// Invites HOST, HOST:PORT or [IPv6]:PORT; the port is 5004 where it is left out. One line if
    /// that was not understood, else nothing; the outcome shows in connections() and problem(). An
    /// invitation waits for the session to open, unless it is not enabled.
    std::string connect(const std::string& host);
    void disconnect(std::uint32_t connection);

  private:
    std::shared_ptr<NetworkBoard> m_board;
};
