#include "wave/WaveRangeEdges.h"

#include <algorithm>

#include "selection/ZeroCrossings.h"

void WaveRangeEdges::move(Edge edge, int frame) {
    const int least = std::min(1, length);
    if (edge == atStart) {
        start = std::clamp(frame, 0, length - least);
        stop = std::max(stop, start + least);
    } else {
        stop = std::clamp(frame, least, length);
        start = std::min(start, stop - least);
    }
}

int WaveRangeEdges::snapped(const WaveAccess& sound, int frame, int within) const {
    if (frame <= 0 || frame >= length || within <= 0)
        return frame;
    const auto crossing =
        ZeroCrossings::nearest(sound, std::uint32_t(frame), std::uint32_t(within));
    return crossing ? int(*crossing) : frame;
}
