#include "midi/MidiNetworkSession.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <thread>

#include "folders/Folders.h"
#include "midi/network/HostAddress.h"
#include "midi/network/NetworkBoard.h"
#include "text/CNumber.h"
#include "text/UnicodeText.h"

namespace {

constexpr std::size_t kLongestName = 63;  // bytes, of a service in DNS (RFC 6763, 4.1.1)

/// Several machines may run the instrument: its name alone would tell nobody which one this is.
std::string ownName() {
    std::array<char, 256> host{};
    std::string name = Folders::applicationName();
    if (gethostname(host.data(), host.size() - 1) == 0 && host[0] != 0)
        name += " on " + std::string(host.data());
    return std::string(UnicodeText::cut(UnicodeText::withoutControls(name), kLongestName));
}

void invite(NetworkBoard& board, const NetworkAddress& address) {
    board.change([](NetworkBoard::State& state) { state.problem.clear(); });
    board.order({NetworkBoard::Order::Kind::connect, 0, false, address});
}

/// Looking a name up may take many seconds; the thread ends when that does.
void findAndInvite(const std::shared_ptr<NetworkBoard>& board,
                   const HostAddress::Written& written) {
    std::thread([board, written] {
        if (const auto address = HostAddress::find(written))
            return invite(*board, *address);
        board->change([&](NetworkBoard::State& state) {
            state.problem = "There is no host called " + inQuotes(written.host) + " to connect to.";
        });
    }).detach();
}

}  // namespace

MIDINetworkSession& MIDINetworkSession::defaultSession() {
    // Never destroyed: the network's thread may outlive the main function.
    static auto* const session = new MIDINetworkSession(std::make_shared<NetworkBoard>(ownName()));
    return *session;
}

MIDINetworkSession::MIDINetworkSession(std::shared_ptr<NetworkBoard> board)
    : m_board(std::move(board)) {}

bool MIDINetworkSession::isEnabled() const {
    return m_board->wishes().enabled;
}

void MIDINetworkSession::setEnabled(bool enabled) {
    m_board->setWishes({enabled, connectionPolicy()});
}

MIDINetworkSession::ConnectionPolicy MIDINetworkSession::connectionPolicy() const {
    return m_board->wishes().policy;
}

void MIDINetworkSession::setConnectionPolicy(ConnectionPolicy policy) {
    m_board->setWishes({isEnabled(), policy});
}

std::string MIDINetworkSession::localName() const {
    return m_board->localName();
}

std::uint16_t MIDINetworkSession::port() const {
    return m_board->state().port;
}

std::string MIDINetworkSession::problem() const {
    return m_board->state().problem;
}

std::vector<MIDINetworkSession::Peer> MIDINetworkSession::connections() const {
    return m_board->state().connections;
}

std::vector<MIDINetworkSession::Peer> MIDINetworkSession::requests() const {
    return m_board->state().requests;
}

/// Who takes part may have come from another of its addresses: its name tells as well.
std::vector<MIDINetworkSession::Peer> MIDINetworkSession::found() const {
    NetworkBoard::State state = m_board->state();
    std::erase_if(state.found, [&](const Peer& found) {
        return std::ranges::any_of(state.connections, [&](const Peer& peer) {
            return peer.name == found.name || peer.address == found.address;
        });
    });
    return std::move(state.found);
}

void MIDINetworkSession::answer(std::uint32_t request, bool allowed) {
    m_board->order({NetworkBoard::Order::Kind::answer, request, allowed, {}});
}

std::string MIDINetworkSession::connect(const std::string& host) {
    const auto written = HostAddress::takenApart(host);
    if (!written)
        return inQuotes(host) +
               " is no address. Give HOST, HOST:PORT or [IPv6]:PORT, such as 192.168.1.7:5004.";
    if (!isEnabled())
        return "MIDI over the network is off: switch it on to connect to " + inQuotes(host) + ".";
    if (const auto address = HostAddress::read(*written))
        invite(*m_board, *address);
    else
        findAndInvite(m_board, *written);
    return {};
}

void MIDINetworkSession::disconnect(std::uint32_t connection) {
    m_board->order({NetworkBoard::Order::Kind::disconnect, connection, false, {}});
}
