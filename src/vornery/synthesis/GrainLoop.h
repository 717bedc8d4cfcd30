#pragma once

#include <cstdint>

#include "GrainVoice.h"

/// [render] Writes `frames` frames of a triggered voice and moves its heads, clock and smoothed
/// gain on. The caller holds the voice's lock.
void renderGrains(GrainNoteData& note, const GrainSound& sound, float* out,
                  std::uint32_t frames) noexcept;
