#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "WaveWindow.h"
#include "audiounits/StreamDescription.h"

class VornWave2;
class VornWaveBlock;
class VornWaveSequence;

/// What every sound can be asked: waves, blocks and sequences. Frames, 32-bit float samples, one
/// or two channels (interleaved). [control]
class WaveAccess {
  public:
    virtual ~WaveAccess() = default;
    /// Frames.
    virtual std::uint32_t sampleCount() const = 0;
    /// Valid while the sound lives.
    virtual const StreamDescription* audioDescription() const = 0;
    /// Windows onto frames [at, at + *count); *count becomes the frames that they hold. Null when
    /// nothing can be read, for instance while a wave is loading.
    virtual WaveWindowList retrieveWindowsAt(std::uint32_t at, std::uint32_t* count) const = 0;
    /// Copies `frames` frames from the start, in the sound's own layout; returns those copied.
    virtual std::uint32_t write(std::uint32_t frames, float* into) const = 0;
    /// The span [from, from + count) as a sound of its own that shares the samples: a block, or a
    /// sequence of a sequence. Null from a sound that cannot be sliced.
    virtual std::shared_ptr<WaveAccess> sliceBlockFrom(std::uint32_t /*from*/,
                                                       std::uint32_t /*count*/) const {
        return nullptr;
    }
};

/// A sound as players and views hold it. [control]
class WaveSequenceAccess : public WaveAccess {
  public:
    /// A new wave in memory with a copy of all frames in `channels` channels (1 or 2), to be saved
    /// into `folder` if it is saved.
    virtual std::shared_ptr<VornWave2> flattenInto(const std::string& folder,
                                                   std::uint32_t channels) const = 0;
    /// The frames [from, from + count) as a sequence that shares the samples; null when `from` lies
    /// past the end.
    virtual std::shared_ptr<VornWaveSequence> sliceFrom(std::uint32_t from,
                                                        std::uint32_t count) const = 0;
};

/// A sound that lies in one piece: a wave or a block. [control]
class ContiguousWave : public WaveAccess {
  public:
    /// The first sample of frame `at`, or null. *count is clamped to what is there and *format
    /// (may be null) receives the WaveFormat of the samples.
    virtual const float* retrieveWindowAt(std::uint32_t at, std::uint32_t* count,
                                          std::int32_t* format) const = 0;
};
