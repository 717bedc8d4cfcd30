#pragma once

#include <cstdint>
#include <string>

#include "VornWaveSequence.h"
#include "handoff/Shared.h"
#include "storage/FileNames.h"

/// Sounds as the 16-bit mono WAV files that the data folder holds.
namespace StoredWave {

/// A float sample times 32767, truncated, of which the low 16 bits are kept: beyond ±1 it wraps
/// around. What no 32-bit integer holds counts as the nearest one, and not a number as 0.
std::int16_t sixteenBits(float sample);

/// Writes a sound aside and gives it the name `path`. All frames, one sample each, from the first
/// window on and as far as the memory behind it goes on, then zeros: sounds of the instrument lie
/// in one piece. Answers one line when it failed, as a sound that is loading does, else nothing;
/// then all is as it was before. [any thread but render]
[[nodiscard]] std::string store(const VornWaveSequence& wave, const std::string& path,
                                FileNames::Existing existing);
/// The same, but given up, with a line, as soon as `unwanted` says so.
[[nodiscard]] std::string store(const VornWaveSequence& wave, const std::string& path,
                                FileNames::Existing existing, const Shared<bool>& unwanted);

}  // namespace StoredWave
