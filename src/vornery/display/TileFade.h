#pragma once

#include <algorithm>

/// A tile's opacity: at rest, or on its way to another one, evenly. Seconds of Clock::monotonic.
struct TileFade {
    double from = 0, to = 0;
    double start = 0, seconds = 0;

    double at(double now) const {
        if (seconds <= 0 || now >= start + seconds)
            return to;
        return from + (to - from) * std::clamp((now - start) / seconds, 0.0, 1.0);
    }
    bool isUnderWay(double now) const { return from != to && now < start + seconds; }
};
