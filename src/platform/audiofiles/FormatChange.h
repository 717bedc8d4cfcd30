#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "audiofiles/Resampler.h"
#include "audiounits/AudioUnitTypes.h"

/// Turns a stream of one format into interleaved frames of another: sample format, channels and
/// rate. One channel is heard on both of a stereo output; two become their mean in a mono one.
/// What need not change is copied bit for bit. [one thread at a time]
class FormatChange {
  public:
    FormatChange(const StreamDescription& from, const StreamDescription& to);
    /// Of making it.
    OSStatus status() const { return m_status; }

    /// What is ready of the output; good until the next call. At another rate it comes late.
    std::span<const std::byte> convert(const AudioBufferList& list, std::uint32_t frames);
    /// The rest of it, in one or more calls; empty at the end.
    std::span<const std::byte> flush();

  private:
    void readPlanes(const AudioBufferList& list, std::uint32_t frames);
    std::span<const std::byte> pack(const std::vector<float>* planes, std::uint32_t frames);

    StreamDescription m_from;
    StreamDescription m_to;
    std::unique_ptr<Resampler> m_resampler;
    std::vector<float> m_planes[2];
    std::vector<float> m_resampled[2];
    std::vector<std::byte> m_packed;
    OSStatus m_status = noErr;
};
