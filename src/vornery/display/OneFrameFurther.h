#pragma once

#include "WaveAccess.h"

/// A sound whose windows hold one frame more than they are said to, where the sound goes on. A tile
/// that interpolates between frames needs the one behind its last to reach its own right edge. The
/// count that comes back is the one without it, so nothing else changes.
class OneFrameFurther final : public WaveSequenceAccess {
  public:
    explicit OneFrameFurther(std::shared_ptr<WaveSequenceAccess> sound);
    const std::shared_ptr<WaveSequenceAccess>& sound() const { return m_sound; }

    std::uint32_t sampleCount() const override;
    const StreamDescription* audioDescription() const override;
    WaveWindowList retrieveWindowsAt(std::uint32_t at, std::uint32_t* count) const override;
    std::uint32_t write(std::uint32_t frames, float* into) const override;
    std::shared_ptr<WaveAccess> sliceBlockFrom(std::uint32_t from,
                                               std::uint32_t count) const override;
    std::shared_ptr<VornWave2> flattenInto(const std::string& folder,
                                           std::uint32_t channels) const override;
    std::shared_ptr<VornWaveSequence> sliceFrom(std::uint32_t from,
                                                std::uint32_t count) const override;

  private:
    std::shared_ptr<WaveSequenceAccess> m_sound;
};
