#pragma once

#include <cstddef>
#include <span>
#include <vector>

/// What a recording of one steady sine sounds like.
struct Tone {
    double hertz = 0;
    double amplitude = 0;     // of the sine; full scale is 1
    std::size_t windows = 0;  // how many stretches of 2048 frames were sounding

    /// Medians over the sounding windows, so that gaps and clicks of a busy machine do not count.
    static Tone measure(std::span<const float> mono, double rate);
};

/// One channel of an interleaved recording.
std::vector<float> channelOf(std::span<const float> interleaved, std::size_t channels,
                             std::size_t channel);
