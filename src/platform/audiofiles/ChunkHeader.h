#pragma once

#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// Chunks of a file that are looked at before giving up; real files have a dozen.
inline constexpr int kMostChunks = 4096;

/// The first bytes of a chunk of an open file, read as numbers; zeros past the end.
class ChunkHeader {
  public:
    ChunkHeader(int descriptor, std::uint64_t at)
        : m_whole(pread(descriptor, m_bytes.data(), m_bytes.size(), static_cast<off_t>(at)) >= 8) {}

    /// At least an identifier and a 32-bit size are there.
    bool whole() const { return m_whole; }
    bool is(std::string_view id) const { return std::string_view(m_bytes.data(), 4) == id; }
    /// `at` + `width` is at most 24, `width` at most 8.
    std::uint64_t number(std::size_t at, std::size_t width, bool bigEndian) const {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < width; ++i)
            value = value << 8 |
                    static_cast<unsigned char>(m_bytes[at + (bigEndian ? i : width - 1 - i)]);
        return value;
    }

  private:
    std::array<char, 24> m_bytes{};
    bool m_whole;
};
