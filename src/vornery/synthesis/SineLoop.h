#pragma once

#include <cstdint>

/// [render] Sines of `count` phases from 0 to 2 pi, single precision. They are the C library's to
/// the bit (but for one in a hundred million, by its choice of instructions), several at a time:
/// a power curve further down the chain makes the last bit of a value near zero audible.
void sines(const float* phases, float* out, std::uint32_t count) noexcept;
