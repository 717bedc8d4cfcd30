#pragma once

#include <string>

#include "Sound.h"

/// Writes 16-bit mono at 44100 Hz with triangular dither of two steps, always the same: Stanley P.
/// Lipshitz, Robert A. Wannamaker and John Vanderkooy, "Quantization and dither", 1992. Silence
/// at an end stays silence. Answers false, and leaves no file, when it cannot be written.
bool writeWav(const std::string& path, const Sound& sound);
