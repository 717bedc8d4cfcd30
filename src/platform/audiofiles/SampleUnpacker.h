#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "audiounits/AudioUnitTypes.h"

/// Takes interleaved linear PCM apart: any depth and byte order becomes one plane of floats in
/// [-1, 1] per channel. Integers of w bits are value / 2^(w - 1); what is not finite is 0. More
/// than two channels fold to two: means of the even and of the odd ones.
/// Real is double where nothing may be lost, float where the next step wants floats.
template <typename Real>
class SampleUnpacker {
  public:
    explicit SampleUnpacker(const StreamDescription& format) : m_format(format) {}

    static bool supports(const StreamDescription& format);
    /// 1 or 2.
    std::uint32_t planeCount() const;
    /// Fills planes[0], and planes[1] for two, with `frames` samples; grows them as needed.
    void unpack(const std::byte* packed, std::uint32_t frames, std::vector<Real>* planes);

  private:
    void unpackChannel(const std::byte* packed, std::uint32_t channel, std::uint32_t frames,
                       Real* out) const;
    void fold(const std::byte* packed, std::uint32_t first, std::uint32_t frames, Real* out);

    StreamDescription m_format;
    std::vector<Real> m_channel;
};
