#pragma once

#include <cstdint>

#include "GrainVoice.h"

/// Frames that are worked on at once: what a grain needs of them stays in the nearest cache.
inline constexpr std::uint32_t kGrainBlock = 256;

/// One head over a block of frames.
struct HeadBlock {
    float positions[kGrainBlock];
    float values[kGrainBlock];
    bool nearEnd;  // some position may be in the last sample or on the end itself
};

/// [render] The clock after each of the next frames, as long as the grain lasts. Moves the voice's
/// clock on and returns how many, at most `most`.
std::uint32_t runClock(GrainVoice& voice, float* clocks, std::uint32_t most) noexcept;

/// [render] Where a head is at each of the next frames. Moves the head on.
void runHead(const GrainVoice& voice, float& head, HeadBlock& block, std::uint32_t frames) noexcept;

/// [render] The same for both heads at once, by the steps given: at most a quarter more than the
/// voice's ratio.
void runHeadsByStep(GrainVoice& voice, const float* steps, HeadBlock* blocks,
                    std::uint32_t frames) noexcept;

/// [render] Reads the sound at a block's positions.
void readBlock(const GrainVoice& voice, HeadBlock& block, std::uint32_t frames) noexcept;

/// [render] The note gain of each of the next frames. Moves the smoothed gain on.
void runGain(GrainVoice& voice, float* gains, std::uint32_t frames) noexcept;
