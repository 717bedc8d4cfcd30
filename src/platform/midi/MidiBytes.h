#pragma once

#include <cstdint>
#include <span>

#include "midi/MidiFile.h"

/// Walks over a part of a MIDI file and never past its end: whatever is missing is thrown as a
/// MidiFileError with its offset in the file, to be caught by the parser.
class MidiBytes {
  public:
    /// `offset` is that of the first byte in the file; `part` names what the bytes are.
    MidiBytes(std::span<const std::uint8_t> bytes, std::uint64_t offset, const char* part)
        : m_bytes(bytes), m_offset(offset), m_part(part) {}

    std::uint64_t offset() const { return m_offset; }
    std::size_t left() const { return m_bytes.size(); }
    bool atEnd() const { return m_bytes.empty(); }

    std::uint8_t peek() const;
    std::uint8_t byte();
    /// Big-endian, `count` bytes, at most 4.
    std::uint32_t number(int count);
    /// A channel message's data byte, 0 to 127.
    std::uint8_t data();
    /// A variable-length quantity of at most four bytes.
    std::uint32_t quantity();
    /// The next `length` bytes; `lengthOffset` is where that length stands.
    MidiBytes take(std::uint32_t length, std::uint64_t lengthOffset, const char* part);

    [[noreturn]] static void refuse(std::uint64_t offset, std::string reason);

  private:
    std::span<const std::uint8_t> m_bytes;
    std::uint64_t m_offset;
    const char* m_part;
};
