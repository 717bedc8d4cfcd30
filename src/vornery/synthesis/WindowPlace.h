#pragma once

#include <cstdint>

#include "WaveWindow.h"

/// A frame of a window list.
struct WindowPlace {
    const WaveWindow* window = nullptr;
    std::uint32_t offset = 0;  // frames into the window
};

/// Where frame `position` of a list lies: past the end it is the terminator; no list has no places.
inline WindowPlace placeOf(std::uint32_t position, const WaveWindow* list) {
    const WaveWindow* window = list;
    for (; window && window->data; ++window) {
        if (position < window->frameCount)
            return {window, position};
        position -= window->frameCount;
    }
    return {window, 0};
}

/// [render] The first window from `window` on that has frames, or the terminator.
inline const WaveWindow* windowWithFrames(const WaveWindow* window) {
    while (window->data && window->frameCount == 0)
        ++window;
    return window;
}

/// [render] Floats from one frame of a window to the next.
inline std::size_t strideOf(const WaveWindow& window) {
    return window.format == static_cast<std::int32_t>(WaveFormat::mono) ? 1 : 2;
}
inline bool isStereo(const WaveWindow& window) {
    return window.format == static_cast<std::int32_t>(WaveFormat::stereoInterleaved);
}

/// [render] The first float of a frame of a window.
inline const float* samplesAt(const WindowPlace& place) {
    return place.window->data + place.offset * strideOf(*place.window);
}
