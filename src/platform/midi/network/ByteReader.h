#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

/// The one way to read bytes that came over the network: big-endian, never past the end. What is
/// missing reads as 0 and makes the reader fail for good, so a whole record may be read before
/// failed() is asked.
class ByteReader {
  public:
    explicit ByteReader(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}

    bool failed() const { return m_failed; }
    std::size_t left() const { return m_bytes.size(); }
    std::span<const std::uint8_t> rest() const { return m_bytes; }

    std::uint8_t peek() const { return m_bytes.empty() ? std::uint8_t{0} : m_bytes.front(); }
    std::uint8_t u8() { return static_cast<std::uint8_t>(number(1)); }
    std::uint16_t u16() { return static_cast<std::uint16_t>(number(2)); }
    std::uint32_t u32() { return static_cast<std::uint32_t>(number(4)); }
    std::uint64_t u64() { return number(8); }

    /// The next `count` bytes; fewer, and the reader has failed, if they are not there.
    std::span<const std::uint8_t> take(std::size_t count) {
        m_failed |= count > m_bytes.size();
        const auto taken = m_bytes.first(std::min(count, m_bytes.size()));
        m_bytes = m_bytes.subspan(taken.size());
        return taken;
    }

  private:
    std::uint64_t number(std::size_t count) {
        std::uint64_t value = 0;
        for (const std::uint8_t byte : take(count))
            value = value << 8 | byte;
        return m_failed ? 0 : value;
    }

    std::span<const std::uint8_t> m_bytes;
    bool m_failed = false;
};
