#pragma once

#include <atomic>
#include <vector>

#include "VornWaveSequence.h"

/// The lowest and the highest sample of a span of a sound, -1 to 1.
struct WavePeak {
    float low = 0;
    float high = 0;
    bool operator==(const WavePeak&) const = default;
};

namespace WavePeaks {

/// One for each of so many columns, which share all frames of the sound evenly; both channels are
/// taken together, what is no number counts as silence, and columns reach to their neighbours, so
/// that they draw one line. Waits for a sound that is loading. Empty once `cancelled`, and for a
/// sound that cannot be read. [any thread] Allocates its result and the list of windows.
std::vector<WavePeak> of(const VornWaveSequence& sound, int columns,
                         const std::atomic<bool>& cancelled);

}  // namespace WavePeaks
