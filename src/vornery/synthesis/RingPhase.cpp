#include "RingPhase.h"

namespace {
constexpr float kShortestStep = 1.f / 4096.f;  // a stretch is then at most 8192 steps
constexpr float kLongestStep = 0.5f;           // at least 8 steps to the last stretch
constexpr std::uint32_t kFewestFrames = 16;
}  // namespace

RingPhase::RingPhase(float step, std::uint32_t frames) noexcept : m_step(step) {
    if (frames < kFewestFrames || !(step >= kShortestStep && step <= kLongestStep))
        return;
    float begin = kFirst;
    while (begin < step * 8.f)
        begin *= 2.f;
    m_firstStretch = begin;
    for (; begin <= 4.f; begin *= 2.f) {
        const float advance = (begin + step) - begin;
        m_stretches[m_count++] = {std::min(begin * 2.f, kTurnOver), advance, 0.999999f / advance};
    }
}
