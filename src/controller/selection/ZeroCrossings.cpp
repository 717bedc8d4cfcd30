#include "selection/ZeroCrossings.h"

#include <algorithm>
#include <limits>

namespace {

float valueAt(const WaveWindow& window, std::uint32_t frame) {
    const std::size_t i = frame;
    switch (static_cast<WaveFormat>(window.format)) {
        case WaveFormat::mono:
            return window.data[i];
        case WaveFormat::stereoInterleaved:
            return window.data[2 * i] + window.data[2 * i + 1];
        case WaveFormat::oneOfStereo:
            return window.data[2 * i];
    }
    return 0;
}

bool crosses(float before, float behind) {
    return (before <= 0 && behind >= 0) || (before >= 0 && behind <= 0);
}

std::uint32_t distance(std::uint32_t a, std::uint32_t b) {
    return a < b ? b - a : a - b;
}

}  // namespace

std::optional<std::uint32_t> ZeroCrossings::nearest(const WaveAccess& sound, std::uint32_t frame,
                                                    std::uint32_t within) {
    within = std::min(within, kFurthest);
    const std::uint32_t from = frame > within ? frame - within - 1 : 0;
    std::uint32_t count = frame - from + within + 1;
    const WaveWindowList windows = sound.retrieveWindowsAt(from, &count);
    std::optional<std::uint32_t> best;
    float before = std::numeric_limits<float>::quiet_NaN();
    std::uint32_t at = from;
    for (const WaveWindow* window = windows.get(); window && window->data; ++window) {
        for (std::uint32_t i = 0; i < window->frameCount; ++i, ++at) {
            const float value = valueAt(*window, i);
            if (crosses(before, value) && (!best || distance(at, frame) < distance(*best, frame)))
                best = at;
            before = value;
        }
    }
    return best;
}
