#pragma once

#include <cstdint>
#include <vector>

#include "WaveAccess.h"

/// The samples of a short stretch of a sound, one list for each channel, for drawing: finite and
/// within -1 to 1, what is no number as silence. [main]
struct VisibleSamples {
    std::vector<float> channels[2];  // the second is empty for mono
    std::int32_t first = 0;          // frame of the first sample

    bool empty() const { return channels[0].empty(); }

    /// Frames [from, to) as far as there are any; none from a sound that cannot be read.
    static VisibleSamples of(const WaveSequenceAccess& sound, std::int32_t from, std::int32_t to);
};
