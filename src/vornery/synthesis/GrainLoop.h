#pragma once

#include <cstdint>

struct GrainNoteData;

/// The sound that a grain voice reads: `count` samples, at least one.
struct GrainSound {
    const float* samples;
    std::uint32_t count;
};

/// [render] Writes `frames` frames of a triggered voice and moves its heads, clock and smoothed
/// gain on. The caller holds the voice's lock. Finite samples only.
void renderGrains(GrainNoteData& note, const GrainSound& sound, float* out,
                  std::uint32_t frames) noexcept;
