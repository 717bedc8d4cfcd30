#include "editing/SoundCopy.h"

#include <algorithm>

#include "ChannelCopy.h"
#include "VornWave2.h"
#include "memory/FreeMemory.h"

namespace {

constexpr std::uint64_t kSpare = 64 << 20;  // bytes that are left to everyone else

std::uint32_t strideOf(const WaveWindow& window) {
    return window.format == static_cast<std::int32_t>(WaveFormat::mono) ? 1 : 2;
}

void copyFrames(const WaveWindow& window, std::uint32_t at, std::uint32_t frames,
                std::uint32_t channels, float* into) {
    const float* from = window.data + std::size_t{at} * strideOf(window);
    const bool stereo = window.format == static_cast<std::int32_t>(WaveFormat::stereoInterleaved);
    if (stereo && channels == 2)
        std::copy_n(from, std::size_t{frames} * 2, into);
    else if (stereo)
        ChannelCopy::mean(from, frames, into);
    else if (channels == 2)
        ChannelCopy::pickTwice(from, strideOf(window), frames, into);
    else
        ChannelCopy::pick(from, strideOf(window), frames, into);
}

}  // namespace

SoundCopy::Samples SoundCopy::samplesOf(const VornWaveSequence& sound, const EditSpan& span,
                                        std::uint32_t channels, EditWatch& watch, float share) {
    const std::string noMemory = Copy().error;
    const std::uint64_t floats = std::uint64_t{span.frames()} * channels;
    if (floats * sizeof(float) + kSpare > freeMemory())
        return {{}, noMemory};
    SampleMemory memory(floats);
    if (!memory)
        return {{}, noMemory};
    std::uint32_t count = span.frames();
    const WaveWindowList windows = sound.retrieveWindowsAt(span.from, &count);
    if (!windows || count != span.frames())
        return {{}, "The sound is not loaded yet; nothing was changed."};
    std::uint32_t done = 0;
    for (const WaveWindow* window = windows.get(); window->data; ++window) {
        for (std::uint32_t at = 0; at < window->frameCount;) {
            if (watch.unwanted)
                return {};
            const std::uint32_t part = std::min(kPart, window->frameCount - at);
            const std::size_t place = std::size_t{done} * channels;
            memory.faultIn(place, std::size_t{part} * channels);
            copyFrames(*window, at, part, channels, memory.data() + place);
            at += part;
            done += part;
            watch.progress = share * static_cast<float>(done) / static_cast<float>(count);
        }
    }
    return {std::move(memory), ""};
}

SoundCopy::Copy SoundCopy::flat(const VornWaveSequence& sound, const EditSpan& span,
                                std::uint32_t channels, EditWatch& watch) {
    Samples samples = samplesOf(sound, span, channels, watch, 1.f);
    if (!samples.memory)
        return {nullptr, samples.error};
    return waveOf(std::move(samples.memory), channels);
}

SoundCopy::Copy SoundCopy::waveOf(SampleMemory samples, std::uint32_t channels) {
    const auto frames = static_cast<std::uint32_t>(samples.size() / channels);
    return {VornWave2::initWithOwnershipOfData(std::move(samples), frames,
                                               StreamDescription::float32(channels), "Edited"),
            ""};
}
