#pragma once

#include <cstddef>
#include <span>

#include "audiounits/devices/AlsaLibrary.h"

/// A sample format of a PCM and its conversions. Values beyond full scale are saturated.
struct AlsaFormat {
    snd_pcm_format_t format;
    std::size_t bytes;  // per sample
    /// Mono frames to interleaved ones: on both first channels, silence on further ones.
    void (*spread)(std::span<const float> mono, std::size_t channels, std::byte* interleaved);
    /// The first channel of interleaved frames.
    void (*pick)(const std::byte* interleaved, std::size_t channels, std::span<float> mono);

    /// Those we can play, best first.
    static std::span<const AlsaFormat> all();
};
