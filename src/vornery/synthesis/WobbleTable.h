#pragma once

#include <cstdint>

/// The pitch wobble of frequency modulation: sin(step * k) * 0.25 + 1 for frame k of a render, in
/// single precision. All voices share the dial, so the last table of a thread is kept.
namespace WobbleTable {

inline constexpr std::uint32_t kFrames = 8192;

/// [render] Values for frames 0 to `frames` - 1, at most kFrames. Valid until the next call on the
/// same thread.
const float* values(float step, std::uint32_t frames) noexcept;

/// One value, for frames beyond the table.
float value(float step, std::uint32_t frame) noexcept;

}  // namespace WobbleTable
