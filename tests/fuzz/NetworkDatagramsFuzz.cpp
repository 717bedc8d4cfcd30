// Any datagrams from one that takes part, on both ports: what is handed on is whole, and nothing is
// held when it has left.
#include <vector>

#include "FuzzInput.h"
#include "NetworkChecks.h"
#include "midi/network/ByteWriter.h"

namespace {

constexpr std::uint32_t kTheirStream = 7;
const NetworkAddress kTheirControl = [] {
    NetworkAddress address;
    address.ip[15] = 10;
    address.port = 5004;
    return address;
}();
const NetworkAddress kTheirData = kTheirControl.at(5005);

void join(NetworkSession& session, SessionTime now) {
    const auto invitation =
        SessionPacket{
            .command = SessionCommand::invitation, .token = 1, .ssrc = kTheirStream, .name = "Peer"}
            .written();
    session.receive(SessionPort::control, kTheirControl, invitation, now);
    session.receive(SessionPort::data, kTheirData, invitation, now);
}

/// A good header in front of anything: `step` from the last packet.
std::vector<std::uint8_t> midiPacket(std::uint16_t sequence, std::span<const std::uint8_t> rest) {
    std::vector<std::uint8_t> datagram;
    ByteWriter(datagram).u8(0x80).u8(97).u16(sequence).u32(0).u32(kTheirStream).bytes(rest);
    return datagram;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    NetworkChecks host;
    std::uint32_t random = 0;
    NetworkSession session(host, {"Fuzz", 1, [&] { return random += 0x10001; }});
    SessionTime now = kSessionSecond;
    join(session, now);
    NetworkChecks::check(host.peers.size() == 1);
    std::uint16_t sequence = 0xFFF0;
    while (!input.atEnd()) {
        const std::uint8_t choice = input.byte();
        now += kSessionSecond / 64 * (choice >> 4);
        switch (choice & 7) {
            case 0:
                session.receive(SessionPort::control, kTheirControl, input.piece(), now);
                break;
            case 1:
                session.receive(SessionPort::data, kTheirData, input.piece(), now);
                break;
            case 2:
                session.send(*host.peers.begin(), input.piece(true), now);
                break;
            case 3:
                session.turn(now);
                break;
            case 4: {  // lost, late or jumping
                const auto step = static_cast<std::int8_t>(input.byte());
                sequence = static_cast<std::uint16_t>(sequence + step * (choice & 8 ? 64 : 1));
                [[fallthrough]];
            }
            default:
                session.receive(SessionPort::data, kTheirData,
                                midiPacket(++sequence, input.piece(choice & 8)), now);
        }
        if (host.peers.empty())
            join(session, now += kSessionSecond);
        NetworkChecks::check(host.peers.size() == 1);
    }
    session.disconnect(*host.peers.begin(), now);
    NetworkChecks::check(host.peers.empty() && host.held.empty());
    return 0;
}
