#include "DelayFilter.h"

#include <algorithm>
#include <bit>

#include "PullUpstream.h"

namespace {

void echo(float* __restrict line, float feedback, float* __restrict samples, std::uint32_t frames) {
    for (std::uint32_t k = 0; k < frames; ++k) {
        const float v = samples[k] + line[k];
        line[k] = v * feedback;
        samples[k] = v;
    }
}

// Stretches of the loop up to its end.
void echoRound(const DelayLine::Loop& loop, float feedback, float* samples, std::uint32_t frames) {
    std::uint32_t position = loop.position;
    for (std::uint32_t done = 0; done < frames;) {
        const std::uint32_t run = std::min(frames - done, loop.length - position);
        echo(loop.buffer + position, feedback, samples + done, run);
        done += run;
        position = 0;
    }
}

}  // namespace

DelayFilter::DelayFilter(float delay, float feedback)
    : VornCallbackUnit(&render, StreamDescription::float32(1)), m_line(m_data, delay) {
    m_data.feedback = feedback;
}

// Silence comes in and the line is at rest: it stays as it is, and so does what comes out. True
// when that is the case; `samples`, zeros until now, then hold it.
bool DelayFilter::rest(const DelayLine::Loop& loop, float* samples,
                       std::uint32_t frames) const noexcept {
    float held = 0.f;
    if (!m_steady.holds(loop, held))
        return false;
    const float v = 0.f + held;
    if (std::bit_cast<std::uint32_t>(v * m_data.feedback) != std::bit_cast<std::uint32_t>(held))
        return false;
    if (v != 0.f)
        std::fill_n(samples, frames, v);
    return true;
}

OSStatus DelayFilter::render(void* context, AudioUnitRenderActionFlags* flags,
                             const AudioTimeStamp* time, std::uint32_t, std::uint32_t frames,
                             AudioBufferList* data) {
    auto& unit = *static_cast<DelayFilter*>(context);
    const DelayLine::Loop loop = unit.m_line.enter();
    const float feedback = unit.m_data.feedback;
    const bool silent = pullUpstream(unit, flags, time, frames, data);
    if (loop.length == 0) {
        unit.m_line.leave(0);
        return noErr;
    }
    float* samples = data->samples<float>();
    if (!silent || !unit.rest(loop, samples, frames)) {
        echoRound(loop, feedback, samples, frames);
        silent ? unit.m_steady.look(loop, frames) : unit.m_steady.forget();
        markSilence(flags, false);
    } else {
        markSilence(flags, frames == 0 || samples[0] == 0.f);
    }
    unit.m_line.leave(loop.positionAfter(frames));
    return noErr;
}
