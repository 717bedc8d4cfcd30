#pragma once

#include <cstddef>
#include <vector>

/// Frames per second of every wave that is made here.
inline constexpr double kFramesPerSecond = 44100;
/// Hertz of a wave's pitch: key 48 reads a sound at its recorded rate, and key 48 is this A.
inline constexpr double kPitch = 440;

/// Mono samples, full scale is 1; of any level until it is finished.
using Sound = std::vector<double>;

inline std::size_t framesIn(double seconds) {
    return std::size_t(seconds * kFramesPerSecond + 0.5);
}
