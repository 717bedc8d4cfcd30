#pragma once

#include <string>

#include "VornWaveSequence.h"
#include "editing/EditSpan.h"
#include "editing/EditWatch.h"
#include "memory/SampleMemory.h"

/// Copies of a sound in one piece, in memory of their own, made part by part so that they can be
/// watched and given up. [any thread but render]
namespace SoundCopy {

/// Frames that are worked on between two looks at the watch.
inline constexpr std::uint32_t kPart = 1 << 16;

/// A new wave; or none, with the one sentence that says why unless it was given up.
struct Copy {
    std::shared_ptr<VornWave2> wave = nullptr;
    std::string error = "There is not enough memory for this edit; nothing was changed.";
};

/// The same of raw samples.
struct Samples {
    SampleMemory memory;  // empty: failed
    std::string error;
};

/// The span in `channels` channels, 1 or 2: mono is doubled, stereo becomes its mean. The watch's
/// progress comes to `share`.
Samples samplesOf(const VornWaveSequence& sound, const EditSpan& span, std::uint32_t channels,
                  EditWatch& watch, float share);

/// The same as a wave.
Copy flat(const VornWaveSequence& sound, const EditSpan& span, std::uint32_t channels,
          EditWatch& watch);

/// Samples of `channels` channels as a wave in memory.
Copy waveOf(SampleMemory samples, std::uint32_t channels);

}  // namespace SoundCopy
