#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "audiounits/AudioUnitTypes.h"

/// Between the sample formats that audio units speak: packed 32-bit float or signed 16-bit, one or
/// two channels, interleaved or one buffer a channel. Full scale is 1.0 in float, 32768 in integer.
namespace StreamConversion {

/// Whether `format` is one of those above, at any rate above 0.
bool supports(const StreamDescription& format);

/// [render] Channel `channel` of `frames.size()` frames as floats. A mono stream answers for both
/// channels.
void read(const AudioBufferList& from, const StreamDescription& format, std::uint32_t channel,
          std::span<float> frames) noexcept;

/// [render] Writes one channel; integers are rounded to nearest, ties to even, and saturated.
void write(std::span<const float> frames, const StreamDescription& format, std::uint32_t channel,
           AudioBufferList& to) noexcept;

/// [render] Zeros in every buffer for `frames` frames.
void clear(AudioBufferList& list, const StreamDescription& format, std::uint32_t frames) noexcept;

}  // namespace StreamConversion

/// Memory for one pull of any supported format, allocated once for `frames` frames.
class StreamScratch {
  public:
    explicit StreamScratch(std::uint32_t frames);
    /// [render] A buffer list onto the memory, laid out for `frames` frames of `format`.
    AudioBufferList list(const StreamDescription& format, std::uint32_t frames) noexcept;

  private:
    std::uint32_t m_frames;
    std::unique_ptr<float[]> m_memory;  // two channels
};
