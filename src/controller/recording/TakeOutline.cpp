#include "recording/TakeOutline.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr float kFullScale = 32768.f;
}

void TakeOutline::clear() {
    m_columns.clear();
    m_frames = 0;
}

float TakeOutline::grow(std::span<const float> heard) {
    float peak = 0;
    for (; m_frames < heard.size(); ++m_frames) {
        const float sample = heard[m_frames] / kFullScale;
        peak = std::max(peak, std::abs(sample));
        add(sample);
    }
    return peak;
}

void TakeOutline::add(float sample) {
    if (m_frames % kColumnFrames == 0)
        m_columns.emplace_back();
    Column& column = m_columns.back();
    column.low = std::min(column.low, sample);
    column.high = std::max(column.high, sample);
}
