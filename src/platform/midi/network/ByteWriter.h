#pragma once

#include <cstdint>
#include <span>
#include <vector>

/// Appends big-endian numbers to a datagram.
class ByteWriter {
  public:
    explicit ByteWriter(std::vector<std::uint8_t>& to) : m_to(to) {}

    ByteWriter& u8(std::uint64_t value) { return number(value, 1); }
    ByteWriter& u16(std::uint64_t value) { return number(value, 2); }
    ByteWriter& u32(std::uint64_t value) { return number(value, 4); }
    ByteWriter& u64(std::uint64_t value) { return number(value, 8); }
    ByteWriter& bytes(std::span<const std::uint8_t> bytes) {
        m_to.insert(m_to.end(), bytes.begin(), bytes.end());
        return *this;
    }

  private:
    ByteWriter& number(std::uint64_t value, int count) {
        while (count-- > 0)
            m_to.push_back(static_cast<std::uint8_t>(value >> (8 * count)));
        return *this;
    }

    std::vector<std::uint8_t>& m_to;
};
