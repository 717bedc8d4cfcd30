#pragma once

#include <cstddef>

#include "handoff/Shared.h"

/// Turns the `count` native 16-bit integers at the start of `samples` into as many floats, in
/// place: value x 3.0517578e-5, from the last to the first so that none is overwritten unread.
/// Adds `step` to `progress` for each.
void widenSixteenBits(float* samples, std::size_t count, double step, Shared<float>& progress);

/// Sets samples that are not finite to 0.
void silenceNonFinite(float* samples, std::size_t count);
