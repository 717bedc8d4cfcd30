// Invitations, answers and everything else that several hosts may say, in any order and at any
// time, between what the player does: limits hold, and in the end everybody has left.
#include <array>
#include <string_view>

#include "FuzzInput.h"
#include "NetworkChecks.h"

namespace {

constexpr std::array kCommands = {SessionCommand::invitation, SessionCommand::accepted,
                                  SessionCommand::refused,    SessionCommand::goodbye,
                                  SessionCommand::clock,      SessionCommand::feedback};

/// Tokens and streams are few, so that they meet.
SessionPacket packet(FuzzInput& input) {
    SessionPacket packet;
    packet.command = kCommands[input.byte() % kCommands.size()];
    const std::uint8_t choice = input.byte();
    packet.token = choice >> 4;
    packet.ssrc = choice & 15;
    packet.count = choice >> 6;
    const auto name = input.piece();
    packet.name = {reinterpret_cast<const char*>(name.data()), name.size()};
    return packet;
}

SessionPort port(std::uint8_t choice) {
    return choice & 0x80 ? SessionPort::data : SessionPort::control;
}

std::uint32_t oneOf(const std::set<std::uint32_t>& ids, std::uint8_t choice) {
    return ids.empty() ? choice : *std::next(ids.begin(), choice % ids.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    NetworkChecks host;
    std::uint32_t random = 0;
    NetworkSession session(host, {"Fuzz", 5, [&] { return random++ & 15; }});
    SessionTime now = kSessionSecond;
    while (!input.atEnd()) {
        const std::uint8_t choice = input.byte();
        switch (choice & 15) {
            case 0:
                session.setPolicy(MIDINetworkSession::ConnectionPolicy{input.byte() % 3});
                break;
            case 1:
                session.invite(input.address(), now);
                break;
            case 2:
                session.unreachable(input.address(), now);
                break;
            case 3:
                session.answer(oneOf(host.asks, choice >> 5), choice & 16, now);
                break;
            case 4:
                session.disconnect(oneOf(host.peers, choice >> 4), now);
                break;
            case 5:
                session.send(oneOf(host.peers, choice >> 4), input.piece(), now);
                break;
            case 6:
                session.receive(port(choice), input.address(), input.piece(), now);
                break;
            case 7:
            case 8:
                now += kSessionSecond / 4 << (choice >> 5);
                NetworkChecks::check(session.turn(now) > now);
                break;
            default: {
                const NetworkAddress from = input.address();
                session.receive(port(choice), from, packet(input).written(), now);
            }
        }
    }
    session.close(now);
    NetworkChecks::check(host.peers.empty() && host.asks.empty() && host.held.empty());
    NetworkChecks::check(session.turn(now) == kNever);
    return 0;
}
