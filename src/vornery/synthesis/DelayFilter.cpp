#include "DelayFilter.h"

#include "PullUpstream.h"

namespace {

std::uint32_t echo(const DelayLine::Loop& loop, float feedback, float* samples,
                   std::uint32_t frames) {
    std::uint32_t position = loop.position;
    for (std::uint32_t k = 0; k < frames; ++k) {
        const float v = samples[k] + loop.buffer[position];
        loop.buffer[position] = v * feedback;
        samples[k] = v;
        position = position + 1 == loop.length ? 0 : position + 1;
    }
    return position;
}

}  // namespace

DelayFilter::DelayFilter(float delay, float feedback)
    : VornCallbackUnit(&render, StreamDescription::float32(1)), m_line(m_data, delay) {
    m_data.feedback = feedback;
}

OSStatus DelayFilter::render(void* context, AudioUnitRenderActionFlags* flags,
                             const AudioTimeStamp* time, std::uint32_t, std::uint32_t frames,
                             AudioBufferList* data) {
    auto& unit = *static_cast<DelayFilter*>(context);
    const DelayLine::Loop loop = unit.m_line.enter();
    const float feedback = unit.m_data.feedback;
    pullUpstream(unit, flags, time, frames, data);
    if (loop.length == 0) {
        unit.m_line.leave(0);
        return noErr;
    }
    markSilence(flags, false);
    unit.m_line.leave(echo(loop, feedback, data->samples<float>(), frames));
    return noErr;
}
