#pragma once

#include <string>

#include "VornWaveSequence.h"
#include "editing/EditSpan.h"

/// Edits that copy no samples: each answers a new sound that shares the blocks of the old one, and
/// costs as much as its list of blocks is long. Spans are those of `EditSpan::between`. [main]
namespace SoundEdits {

/// Frames that a sound has at most: counts are kept in 31 bits on the screen.
inline constexpr std::uint32_t kMostFrames = 0x7fffffff;

/// What came of an edit: a sound, or the one sentence that says why nothing was done.
struct Edited {
    VornWaveSequence::Pointer sound = nullptr;
    std::string refusal = {};
};

/// Keeps the span alone.
Edited crop(const VornWaveSequence& sound, const EditSpan& span);
/// Takes the span out.
Edited cut(const VornWaveSequence& sound, const EditSpan& span);
/// Puts silence in the span's place, which takes no memory.
Edited silence(const VornWaveSequence& sound, const EditSpan& span);
/// Puts a wave of the span's length, in the sound's channels, in its place.
Edited replace(const VornWaveSequence& sound, const EditSpan& span,
               std::shared_ptr<VornWave2> wave);
/// Puts another sound behind this one. One of other channels is copied first, stereo as the mean of
/// both, which takes its time.
Edited join(const VornWaveSequence& sound, const VornWaveSequence& other);

/// One sentence when an edit of this span would do nothing, else empty.
std::string emptyFault(const EditSpan& span);

}  // namespace SoundEdits
