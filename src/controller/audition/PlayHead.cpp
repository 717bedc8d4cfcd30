#include "audition/PlayHead.h"

#include <algorithm>

namespace {

constexpr double kFramesPerSecond = 44100;
// More than a device's longest period, so that it does not move in steps on any.
constexpr double kFurthestBehind = kFramesPerSecond / 4;

}  // namespace

void PlayHead::begin(double frame, double now) {
    m_frame = frame;
    m_when = now;
}

double PlayHead::follow(double reported, double now) {
    const double moved = m_frame + (now - m_when) * kFramesPerSecond;
    m_frame = std::max(m_frame, std::clamp(moved, reported - kFurthestBehind, reported));
    m_when = now;
    return m_frame;
}
