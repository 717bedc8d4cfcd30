#include "midi/MidiTrackParser.h"

namespace {

constexpr std::uint8_t kMetaEndOfTrack = 0x2F;
constexpr std::uint8_t kMetaTempo = 0x51;

}  // namespace

std::vector<MidiFileEvent> MidiTrackParser::parse() {
    while (!m_ended) {
        if (m_bytes.atEnd())
            MidiBytes::refuse(m_bytes.offset(), "a track without its End of Track");
        m_tick += m_bytes.quantity();
        readEvent();
    }
    return std::move(m_events);
}

void MidiTrackParser::readEvent() {
    const std::uint8_t first = m_bytes.peek();
    if (first == 0xFF)
        readMeta();
    else if (first == 0xF0 || first == 0xF7)
        skipExclusive();
    else if (first > 0xF0)
        skipSystemMessage();
    else
        readChannelMessage();
}

void MidiTrackParser::readChannelMessage() {
    if (m_bytes.peek() >= 0x80)
        m_runningStatus = m_bytes.byte();
    else if (m_runningStatus == 0)
        MidiBytes::refuse(m_bytes.offset(), "a data byte without a status before it");
    const int message = m_runningStatus & 0xF0;
    const std::uint8_t first = m_bytes.data();
    if (message == 0xC0 || message == 0xD0)  // program, channel pressure: one data byte
        return;
    const std::uint8_t second = m_bytes.data();
    if (message == 0x90)
        m_events.push_back({m_tick, MidiFileEvent::Kind::noteOn, first, second});
    else if (message == 0x80)
        m_events.push_back({m_tick, MidiFileEvent::Kind::noteOff, first, second});
}

void MidiTrackParser::readMeta() {
    m_bytes.byte();
    const std::uint8_t type = m_bytes.byte();
    const std::uint64_t lengthOffset = m_bytes.offset();
    const std::uint32_t length = m_bytes.quantity();
    MidiBytes content = m_bytes.take(length, lengthOffset, "meta event");
    if (type == kMetaTempo)
        readTempo(content, lengthOffset);
    if (type == kMetaEndOfTrack) {
        m_events.push_back({m_tick, MidiFileEvent::Kind::endOfTrack});
        m_ended = true;
    }
}

void MidiTrackParser::readTempo(MidiBytes content, std::uint64_t lengthOffset) {
    if (content.left() != 3)
        MidiBytes::refuse(lengthOffset, "a tempo that is not three bytes long");
    m_events.push_back({m_tick, MidiFileEvent::Kind::tempo, 0, 0, content.number(3)});
}

void MidiTrackParser::skipExclusive() {
    m_bytes.byte();
    const std::uint64_t lengthOffset = m_bytes.offset();
    const std::uint32_t length = m_bytes.quantity();
    m_bytes.take(length, lengthOffset, "exclusive message");
}

/// These belong on a wire and not into a file, but what they hold is known.
void MidiTrackParser::skipSystemMessage() {
    const std::uint8_t status = m_bytes.byte();
    const int dataBytes = status == 0xF2 ? 2 : status == 0xF1 || status == 0xF3 ? 1 : 0;
    for (int i = 0; i < dataBytes; ++i)
        m_bytes.data();
}
