#pragma once

#include <cstdint>
#include <memory>

#include "WaveWindow.h"
#include "audiounits/StreamDescription.h"

class VornWaveBlock;

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
    /// The span [from, from + count) as a sound of its own that shares the samples. Null from a
    /// sound that cannot be sliced.
    virtual std::shared_ptr<WaveAccess> sliceBlockFrom(std::uint32_t /*from*/,
                                                       std::uint32_t /*count*/) const {
        return nullptr;
    }
};

/// A sound that lies in one piece: a wave or a block. [control]
class ContiguousWave : public WaveAccess {
  public:
    /// The first sample of frame `at`, or null. *count is clamped to what is there and *format
    /// (may be null) receives the WaveFormat of the samples.
    virtual const float* retrieveWindowAt(std::uint32_t at, std::uint32_t* count,
                                          std::int32_t* format) const = 0;
};
