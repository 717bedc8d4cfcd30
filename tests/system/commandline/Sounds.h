#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Bytes of WAV files for tests, sound and broken.
namespace sounds {

struct Wav {
    std::uint32_t rate = 44100;
    std::uint16_t channels = 1;
    std::uint16_t bits = 16;
    std::uint16_t tag = 1;  // 1 integers, 3 floats
    std::string data{};
    std::optional<std::uint32_t> claimed{};  // bytes of data that the header tells, if it lies
};
std::string bytesOf(const Wav& wav);

/// 16-bit mono, a tone of 220.5 Hz (200 frames a period).
std::string tone(std::uint32_t frames);

/// What `ombrix render` writes, if it is just that: samples of a 44100 Hz 16-bit mono file.
std::optional<std::vector<std::int16_t>> rendered(const std::string& file);

}  // namespace sounds
