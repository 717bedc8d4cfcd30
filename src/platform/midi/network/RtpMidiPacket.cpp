#include "midi/network/RtpMidiPacket.h"

#include "midi/network/ByteReader.h"

namespace {

// First byte of the header.
constexpr unsigned kRtpVersion = 2;
constexpr unsigned kRtpPadded = 0x20;
constexpr unsigned kRtpExtended = 0x10;
// First byte of the MIDI command section.
constexpr unsigned kLongList = 0x80;
constexpr unsigned kHasJournal = 0x40;
constexpr unsigned kStartsWithDelta = 0x20;

/// Without the padding, whose last byte tells its length; nothing if it is none.
std::optional<std::span<const std::uint8_t>> withoutPadding(std::span<const std::uint8_t> bytes) {
    if (bytes.empty() || bytes.back() == 0 || bytes.back() > bytes.size())
        return std::nullopt;
    return bytes.first(bytes.size() - bytes.back());
}

void skipExtension(ByteReader& bytes) {
    bytes.u16();  // what it is
    bytes.take(std::size_t{4} * bytes.u16());
}

}  // namespace

std::optional<RtpMidiPacket> RtpMidiPacket::read(std::span<const std::uint8_t> datagram) {
    ByteReader header(datagram);
    const unsigned first = header.u8();
    header.u8();  // marker and payload type
    RtpMidiPacket packet;
    packet.sequence = header.u16();
    packet.timestamp = header.u32();
    packet.ssrc = header.u32();
    header.take(std::size_t{4} * (first & 0x0F));  // contributing sources
    if (first & kRtpExtended)
        skipExtension(header);
    if (header.failed() || first >> 6 != kRtpVersion)
        return std::nullopt;
    const auto payload = first & kRtpPadded ? withoutPadding(header.rest()) : header.rest();
    if (!payload)
        return std::nullopt;
    ByteReader bytes(*payload);
    const unsigned flags = bytes.u8();
    const std::size_t length =
        flags & kLongList ? (flags & 0x0Fu) << 8 | bytes.u8() : flags & 0x0Fu;
    packet.commands = bytes.take(length);
    packet.startsWithDelta = flags & kStartsWithDelta;
    if (flags & kHasJournal)
        packet.journal = bytes.rest();
    if (bytes.failed())
        return std::nullopt;
    return packet;
}
