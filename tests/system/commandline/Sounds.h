#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sounds {

/// The bytes of a WAV file, 16-bit mono: a tone of 220.5 Hz (200 frames a period).
std::string tone(std::uint32_t frames);

/// What `ombrix render` writes, if it is just that: samples of a 44100 Hz 16-bit mono file.
std::optional<std::vector<std::int16_t>> rendered(const std::string& file);

}  // namespace sounds
