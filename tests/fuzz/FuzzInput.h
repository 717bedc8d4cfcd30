#pragma once

#include <cstdint>
#include <span>

#include "midi/network/ByteReader.h"
#include "midi/network/NetworkAddress.h"

/// Choices made by the input.
class FuzzInput {
  public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : m_bytes({data, size}) {}

    bool atEnd() const { return m_bytes.left() == 0; }
    std::uint8_t byte() { return m_bytes.u8(); }
    std::uint32_t number() { return m_bytes.u32(); }
    /// At most 255 bytes, or 4080 if `coarse`.
    std::span<const std::uint8_t> piece(bool coarse = false) {
        const std::size_t wanted = std::size_t{m_bytes.u8()} * (coarse ? 16 : 1);
        return m_bytes.take(std::min(wanted, m_bytes.left()));
    }
    /// One of few hosts, some of which are far away, at one of few ports.
    NetworkAddress address() {
        const std::uint8_t choice = m_bytes.u8();
        NetworkAddress address;
        address.ip[15] = static_cast<std::uint8_t>((choice >> 2) * 5);
        address.port = static_cast<std::uint16_t>(5004 + (choice & 3));
        return address;
    }

  private:
    ByteReader m_bytes;
};
