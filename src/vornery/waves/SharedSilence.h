#pragma once

#include <cstdint>

/// Floats in the shared silence, which every window of silence points into.
inline constexpr std::uint32_t kSharedSilenceFloats = 44100;

/// The one buffer of zeros of the process, which nobody ever writes. [any thread but render]
const float* sharedSilence();

/// True for a sample within it.
bool isSharedSilence(const float* sample);
