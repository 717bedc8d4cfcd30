#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "WindowPlace.h"

/// [render] A value in units of 16-bit steps: truncated, and saturated at both ends. Not a number
/// is the upper end.
inline std::int32_t saturated(float steps) {
    constexpr float kGreatest = 32767.f;
    constexpr float kLeast = -32768.f;
    steps = steps < kGreatest ? steps : kGreatest;
    steps = steps > kLeast ? steps : kLeast;
    return static_cast<std::int32_t>(steps);
}
inline std::int16_t saturatedSample(float steps) {
    return static_cast<std::int16_t>(saturated(steps));
}
/// [render] Writes a frame in one piece, of which the compiler can take several at a time.
inline void putPair(float left, float right, std::int16_t* out) {
    const auto first = static_cast<std::uint32_t>(saturated(left));
    const auto second = static_cast<std::uint32_t>(saturated(right));
    const std::uint32_t frame = std::endian::native == std::endian::little
                                    ? (first & 0xffff) | second << 16
                                    : first << 16 | (second & 0xffff);
    std::memcpy(out, &frame, sizeof frame);
}

/// Greatest values written, not magnitudes: never below 0.
struct StereoPeaks {
    float left = 0.f;
    float right = 0.f;
};

/// [render] Writes `frames` frames of a window, which has so many left, times `gain` as 1 or 2
/// interleaved channels, and raises the peaks by what it writes. One channel gives the same to both
/// and counts on the left; a stereo window in a mono output is written sample by sample, as far as
/// it fits.
void writeScaled(const WindowPlace& from, std::uint32_t frames, float gain, float* out,
                 std::uint32_t channels, StereoPeaks& peaks) noexcept;
/// The same in 16 bits; the peaks are taken before the conversion.
void writeScaled(const WindowPlace& from, std::uint32_t frames, float gain, std::int16_t* out,
                 std::uint32_t channels, StereoPeaks& peaks) noexcept;
