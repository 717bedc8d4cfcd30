#include "wave/VisibleSamples.h"

#include <algorithm>
#include <cmath>

namespace {

float drawable(float sample) {
    return std::isnan(sample) ? 0.f : std::clamp(sample, -1.f, 1.f);
}

void append(std::vector<float>& to, const float* sample, std::uint32_t count, int stride) {
    for (std::uint32_t i = 0; i < count; ++i, sample += stride)
        to.push_back(drawable(*sample));
}

}  // namespace

VisibleSamples VisibleSamples::of(const WaveSequenceAccess& sound, std::int32_t from,
                                  std::int32_t to) {
    VisibleSamples samples;
    samples.first = std::max(0, from);
    auto count = static_cast<std::uint32_t>(std::max(0, to - samples.first));
    const WaveWindowList windows =
        sound.retrieveWindowsAt(static_cast<std::uint32_t>(samples.first), &count);
    for (const WaveWindow* window = windows.get(); window && window->data; ++window) {
        const auto format = static_cast<WaveFormat>(window->format);
        const int stride = format == WaveFormat::mono ? 1 : 2;
        const bool stereo = format == WaveFormat::stereoInterleaved;
        // Where the layout changes on the way, the missing channel is the other one again.
        auto& second = samples.channels[1];
        if (stereo && second.empty())
            second = samples.channels[0];
        append(samples.channels[0], window->data, window->frameCount, stride);
        if (stereo || !second.empty())
            append(second, window->data + (stereo ? 1 : 0), window->frameCount, stride);
    }
    return samples;
}
