#pragma once

#include <functional>

#include "audiounits/AudioUnitTypes.h"

/// A render callback for tests: fills a channel's frames from a function of the frame's number.
template <typename Sample>
struct StreamSource {
    std::function<Sample(std::uint32_t frame, std::uint32_t channel)> sample;
    std::uint32_t next = 0;
    OSStatus status = noErr;
    std::uint32_t busAsked = 99;

    AURenderCallbackStruct callback() { return {&StreamSource::render, this}; }

    static OSStatus render(void* self, AudioUnitRenderActionFlags*, const AudioTimeStamp*,
                           std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) {
        auto& source = *static_cast<StreamSource*>(self);
        source.busAsked = bus;
        if (source.status != noErr)
            return source.status;
        std::uint32_t channel = 0;
        for (std::uint32_t b = 0; b < data->mNumberBuffers; ++b) {
            const std::uint32_t channels = data->mBuffers[b].mNumberChannels;
            for (std::uint32_t c = 0; c < channels; ++c, ++channel) {
                for (std::uint32_t i = 0; i < frames; ++i)
                    data->samples<Sample>(b)[i * channels + c] =
                        source.sample(source.next + i, channel);
            }
        }
        source.next += frames;
        return noErr;
    }
};
