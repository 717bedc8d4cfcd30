#include "midi/network/SessionPacket.h"

#include "midi/network/ByteReader.h"
#include "midi/network/ByteWriter.h"

namespace {

constexpr std::uint16_t kSessionSignature = 0xFFFF;
constexpr std::uint32_t kSessionVersion = 2;

std::string_view nameIn(std::span<const std::uint8_t> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return text.substr(0, text.find('\0'));
}

bool readBody(SessionPacket& packet, ByteReader& bytes) {
    switch (packet.command) {
        case SessionCommand::invitation:
        case SessionCommand::accepted:
        case SessionCommand::refused:
        case SessionCommand::goodbye: {
            const std::uint32_t version = bytes.u32();
            packet.token = bytes.u32();
            packet.ssrc = bytes.u32();
            packet.name = nameIn(bytes.rest());
            return version == kSessionVersion;
        }
        case SessionCommand::clock:
            packet.ssrc = bytes.u32();
            packet.count = bytes.u8();
            bytes.take(3);
            for (std::uint64_t& time : packet.times)
                time = bytes.u64();
            return packet.count < packet.times.size();
        case SessionCommand::feedback:
            packet.ssrc = bytes.u32();
            packet.sequence = bytes.u16();
            return true;
    }
    return false;
}

}  // namespace

std::optional<SessionPacket> SessionPacket::read(std::span<const std::uint8_t> datagram) {
    ByteReader bytes(datagram);
    if (bytes.u16() != kSessionSignature)
        return std::nullopt;
    SessionPacket packet;
    packet.command = SessionCommand{bytes.u16()};
    if (!readBody(packet, bytes) || bytes.failed())
        return std::nullopt;
    return packet;
}

std::vector<std::uint8_t> SessionPacket::written() const {
    std::vector<std::uint8_t> datagram;
    ByteWriter to(datagram);
    to.u16(kSessionSignature).u16(static_cast<std::uint16_t>(command));
    if (command == SessionCommand::clock) {
        to.u32(ssrc).u32(std::uint32_t{count} << 24);
        for (const std::uint64_t time : times)
            to.u64(time);
    } else if (command == SessionCommand::feedback) {
        to.u32(ssrc).u16(sequence).u16(0);
    } else {
        to.u32(kSessionVersion).u32(token).u32(ssrc);
        if (command != SessionCommand::goodbye) {
            to.bytes({reinterpret_cast<const std::uint8_t*>(name.data()), name.size()}).u8(0);
        }
    }
    return datagram;
}
