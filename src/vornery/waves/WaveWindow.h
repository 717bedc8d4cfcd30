#pragma once

#include <cstdint>
#include <memory>

class WaveAccess;

/// How to step through a window's samples.
enum class WaveFormat : std::int32_t {
    mono = 0,               // one float per frame
    stereoInterleaved = 1,  // two floats per frame, left then right
    oneOfStereo = 2,        // one float per frame at a stride of two; data points at the channel
};

/// A span of sample memory that some wave owns, handed out in lists. Points into memory that it
/// does not keep alive: who reads a window keeps the sound that it came from.
struct WaveWindow {
    const WaveAccess* owner = nullptr;  // block or wave that the samples belong to; not retained
    const float* data = nullptr;        // first sample of the first frame; null ends a list
    std::uint32_t frameCount = 0;
    std::int32_t format = 0;  // a WaveFormat
};

/// Windows in playing order, ended by one that is all zero. Null when there is nothing to read.
using WaveWindowList = std::unique_ptr<WaveWindow[]>;
