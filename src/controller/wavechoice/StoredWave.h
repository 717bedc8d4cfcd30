#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "VornWaveSequence.h"
#include "storage/FileNames.h"

/// Sounds as the 16-bit mono WAV files that the data folder holds. [main]
namespace StoredWave {

/// A float sample times 32767, truncated, of which the low 16 bits are kept: beyond ±1 it wraps
/// around. What no 32-bit integer holds counts as the nearest one, and not a number as 0.
std::int16_t sixteenBits(float sample);

/// All frames of a sound, one sample each, from the first window on and as far as the memory behind
/// it goes on, then zeros: sounds of the instrument lie in one piece. None while it is loading.
std::optional<std::vector<std::int16_t>> samplesOf(const VornWaveSequence& wave);

/// Writes a sound aside and gives it the name `path`. Answers one line when it failed, else
/// nothing; then all is as it was before.
[[nodiscard]] std::string store(const VornWaveSequence& wave, const std::string& path,
                                FileNames::Existing existing);

}  // namespace StoredWave
