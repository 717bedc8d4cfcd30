#pragma once

#include <cstdint>
#include <optional>

#include "WaveAccess.h"

/// Where a sound can be cut without a click: between two frames of which one is zero or both lie on
/// different sides of it. Of two channels the sum counts; what is not a number crosses nothing.
namespace ZeroCrossings {

/// Frames that are looked at to either side, at most: some microseconds of work.
inline constexpr std::uint32_t kFurthest = 4096;

/// The frame nearest to `frame` that begins behind a crossing, at most `within` frames away; the
/// earlier of two. None where there is none, and at the sound's ends. [any thread but render]
std::optional<std::uint32_t> nearest(const WaveAccess& sound, std::uint32_t frame,
                                     std::uint32_t within);

}  // namespace ZeroCrossings
