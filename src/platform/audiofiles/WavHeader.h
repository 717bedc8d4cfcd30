#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "audiounits/AudioUnitTypes.h"

/// The first bytes of a WAV file: RIFF/WAVE, all numbers little-endian, one "fmt " chunk, for
/// floats a "fact" chunk, and the head of the "data" chunk. As defined by Microsoft and IBM,
/// "Multimedia Programming Interface and Data Specifications 1.0", 1991.
class WavHeader {
  public:
    /// Of a file that holds `frames` frames; `format` must be supported, `frames` fit.
    WavHeader(const StreamDescription& format, std::uint64_t frames);

    /// Packed, interleaved 16-bit integers or 32-bit floats of one or two channels.
    static bool supports(const StreamDescription& format);
    /// What the 32-bit sizes leave room for: 4 GiB with the header.
    static std::uint64_t maximumFrames(const StreamDescription& format);

    /// As many for any number of frames.
    std::span<const std::uint8_t> bytes() const { return {m_bytes.data(), m_size}; }

  private:
    void text(const char* four);
    void number(std::uint64_t value, int bytes);

    std::array<std::uint8_t, 58> m_bytes{};
    std::size_t m_size = 0;
};
