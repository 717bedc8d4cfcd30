#include "ResonanceFilter.h"

#include "PullUpstream.h"

namespace {
constexpr float kFirstDelay = 330.5f / 44100.f;  // 330 frames, 7.48 ms
}

ResonanceFilter::ResonanceFilter()
    : VornCallbackUnit(&render, StreamDescription::float32(1)), m_line(m_data, kFirstDelay) {}

void ResonanceFilter::resonate(const DelayLine::Loop& loop, float* samples,
                               std::uint32_t frames) noexcept {
    const float feedback = m_data.feedback;
    const float resonance = m_data.resonance;
    const float cutoff = m_data.cutoff;
    float state1 = m_data.state1;
    float state2 = m_data.state2;
    std::uint32_t position = loop.position;
    for (std::uint32_t k = 0; k < frames; ++k) {
        const float v = samples[k] + loop.buffer[position];
        state1 += resonance * (v - state1);
        state2 += cutoff * (v - state2);
        loop.buffer[position] = -(feedback * state1);
        samples[k] = state2;
        position = position + 1 == loop.length ? 0 : position + 1;
    }
    m_data.state1 = state1;
    m_data.state2 = state2;
    m_line.leave(position);
}

OSStatus ResonanceFilter::render(void* context, AudioUnitRenderActionFlags* flags,
                                 const AudioTimeStamp* time, std::uint32_t, std::uint32_t frames,
                                 AudioBufferList* data) {
    auto& unit = *static_cast<ResonanceFilter*>(context);
    const DelayLine::Loop loop = unit.m_line.enter();
    pullUpstream(unit, flags, time, frames, data);
    if (loop.length == 0) {
        unit.m_line.leave(0);
        return noErr;
    }
    markSilence(flags, false);
    unit.resonate(loop, data->samples<float>(), frames);
    return noErr;
}
