#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "audiounits/AudioUnit.h"
#include "audiounits/RenderScope.h"

/// Renders a component's output bus 0, buffer after buffer, in packed interleaved frames.
template <typename Sample>
std::vector<Sample> renderUnit(AudioUnit unit, std::uint32_t frames, std::uint32_t channels,
                               std::uint32_t bufferFrames = 512) {
    std::vector<Sample> out(frames * channels);
    for (std::uint32_t at = 0; at < frames; at += bufferFrames) {
        const std::uint32_t count = std::min(bufferFrames, frames - at);
        auto list = AudioBufferList::single(out.data() + at * channels, channels,
                                            count * channels * sizeof(Sample));
        AudioUnitRenderActionFlags flags = 0;
        const AudioTimeStamp time;
        const RenderScope scope;
        if (AudioUnitRender(unit, &flags, &time, 0, count, &list) != noErr)
            return {};
    }
    return out;
}

template <typename T>
OSStatus setUnit(AudioUnit unit, AudioUnitPropertyID property, AudioUnitScope scope,
                 AudioUnitElement element, const T& value) {
    return AudioUnitSetProperty(unit, property, scope, element, &value, sizeof value);
}

/// The largest step from one sample to the next: a click is one that the sound has no reason for.
inline float largestStep(const std::vector<float>& samples, std::size_t stride = 1,
                         std::size_t first = 0) {
    float largest = 0;
    for (std::size_t i = first + stride; i < samples.size(); i += stride)
        largest = std::max(largest, std::abs(samples[i] - samples[i - stride]));
    return largest;
}
