#include "midi/MidiBytes.h"

void MidiBytes::refuse(std::uint64_t offset, std::string reason) {
    throw MidiFileError{offset, std::move(reason)};
}

std::uint8_t MidiBytes::peek() const {
    if (m_bytes.empty())
        refuse(m_offset, std::string("the ") + m_part + " ends too early");
    return m_bytes.front();
}

std::uint8_t MidiBytes::byte() {
    const std::uint8_t value = peek();
    m_bytes = m_bytes.subspan(1);
    ++m_offset;
    return value;
}

std::uint32_t MidiBytes::number(int count) {
    std::uint32_t value = 0;
    for (int i = 0; i < count; ++i)
        value = value << 8 | byte();
    return value;
}

std::uint8_t MidiBytes::data() {
    const std::uint8_t value = peek();
    if (value > 127)
        refuse(m_offset, "a data byte above 127");
    return byte();
}

std::uint32_t MidiBytes::quantity() {
    const std::uint64_t start = m_offset;
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) {
        const std::uint8_t part = byte();
        value = value << 7 | (part & 0x7Fu);
        if (part < 0x80)
            return value;
    }
    refuse(start, "a variable-length quantity of more than four bytes");
}

MidiBytes MidiBytes::take(std::uint32_t length, std::uint64_t lengthOffset, const char* part) {
    if (length > m_bytes.size())
        refuse(lengthOffset, std::string("a length that runs past the end of the ") + m_part);
    const MidiBytes taken(m_bytes.first(length), m_offset, part);
    m_bytes = m_bytes.subspan(length);
    m_offset += length;
    return taken;
}
