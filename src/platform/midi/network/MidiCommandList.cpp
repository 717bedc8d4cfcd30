#include "midi/network/MidiCommandList.h"

#include <array>

#include "midi/MidiMessages.h"

namespace {

// Ends of a segment of an exclusive message.
constexpr std::uint8_t kGoesOn = 0xF0;
constexpr std::uint8_t kCancelled = 0xF4;
constexpr std::uint8_t kEndedUnsaid = 0xF5;  // by the next status byte, at the sender
constexpr std::uint8_t kExclusiveEnd = 0xF7;

}  // namespace

MidiCommandList::MidiCommandList(const RtpMidiPacket& packet, ExclusiveJoiner& exclusive,
                                 MidiCommandSink& sink)
    : m_bytes(packet.commands),
      m_deltaFirst(packet.startsWithDelta),
      m_exclusive(exclusive),
      m_sink(sink) {}

void MidiCommandList::read() {
    bool good = !m_deltaFirst || skipDelta();
    while (good && m_bytes.left() > 0)
        good = readCommand() && (m_bytes.left() == 0 || skipDelta());
}

/// Times are not waited for: what has come is late enough.
bool MidiCommandList::skipDelta() {
    for (int i = 0; i < 4 && m_bytes.left() > 0; ++i) {
        if (m_bytes.u8() < 0x80)
            return true;
    }
    return false;
}

bool MidiCommandList::readCommand() {
    const std::uint8_t status = m_bytes.peek() < 0x80 ? m_runningStatus : m_bytes.u8();
    if (status < 0x80)
        return false;
    if (status >= 0xF8) {
        tell({&status, 1});
        return true;
    }
    m_runningStatus = status < 0xF0 ? status : std::uint8_t{0};
    switch (status) {
        case 0xF0:
            m_exclusive.begin();
            return readExclusive();
        case 0xF7:
            return readExclusive();
        case 0xF4:
        case 0xF5:
            return skipUndefined();
        default:
            return readMessage(status);
    }
}

bool MidiCommandList::readMessage(std::uint8_t status) {
    std::array<std::uint8_t, 3> message{status};
    const std::size_t length = 1 + midiDataBytes(status);
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = dataByte();
        if (!byte)
            return false;
        message[i] = *byte;
    }
    tell({message.data(), length});
    return true;
}

bool MidiCommandList::readExclusive() {
    while (const auto byte = anyByte()) {
        if (*byte < 0x80) {
            m_exclusive.add(*byte);
            continue;
        }
        if (*byte == kGoesOn)
            return true;
        if (*byte == kExclusiveEnd || *byte == kEndedUnsaid)
            tell(m_exclusive.finished());
        m_exclusive.cancel();
        return *byte == kExclusiveEnd || *byte == kEndedUnsaid || *byte == kCancelled;
    }
    m_exclusive.cancel();
    return false;
}

/// Undefined system messages: data bytes, then the end of an exclusive one.
bool MidiCommandList::skipUndefined() {
    while (dataByte()) {
    }
    return m_bytes.left() > 0 && m_bytes.u8() == kExclusiveEnd;
}

/// Nothing, and nothing is consumed, where there is none.
std::optional<std::uint8_t> MidiCommandList::dataByte() {
    while (m_bytes.peek() >= 0xF8) {
        const std::uint8_t realTime = m_bytes.u8();
        tell({&realTime, 1});
    }
    if (m_bytes.left() == 0 || m_bytes.peek() >= 0x80)
        return std::nullopt;
    return m_bytes.u8();
}

/// A data byte, or a status byte other than a real-time one.
std::optional<std::uint8_t> MidiCommandList::anyByte() {
    if (const auto byte = dataByte())
        return byte;
    return m_bytes.left() > 0 ? std::optional(m_bytes.u8()) : std::nullopt;
}

void MidiCommandList::tell(std::span<const std::uint8_t> message) {
    if (!message.empty())
        m_sink.command(message);
}
