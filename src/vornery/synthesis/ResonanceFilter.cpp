#include "ResonanceFilter.h"

#include <algorithm>
#include <bit>

#include "PullUpstream.h"

namespace {

constexpr float kFirstDelay = 330.5f / 44100.f;  // 330 frames, 7.48 ms

// Parameters and state of a render, where the compiler can keep them in registers.
struct Resonator {
    float feedback, resonance, cutoff;
    float state1, state2;

    explicit Resonator(const ResonanceData& data)
        : feedback(data.feedback),
          resonance(data.resonance),
          cutoff(data.cutoff),
          state1(data.state1),
          state2(data.state2) {}

    // One frame: `held` is what the line holds; returns what it is to hold.
    float step(float sample, float held) {
        const float v = sample + held;
        state1 += resonance * (v - state1);
        state2 += cutoff * (v - state2);
        return -(feedback * state1);
    }
};

bool sameBits(float a, float b) {
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

}  // namespace

ResonanceFilter::ResonanceFilter()
    : VornCallbackUnit(&render, StreamDescription::float32(1)), m_line(m_data, kFirstDelay) {}

void ResonanceFilter::resonate(const DelayLine::Loop& loop, float* samples,
                               std::uint32_t frames) noexcept {
    Resonator resonator(m_data);
    std::uint32_t position = loop.position;
    for (std::uint32_t done = 0; done < frames;) {
        const std::uint32_t run = std::min(frames - done, loop.length - position);
        float* __restrict line = loop.buffer + position;
        float* __restrict out = samples + done;
        for (std::uint32_t k = 0; k < run; ++k) {
            line[k] = resonator.step(out[k], line[k]);
            out[k] = resonator.state2;
        }
        done += run;
        position = 0;
    }
    m_data.state1 = resonator.state1;
    m_data.state2 = resonator.state2;
}

// Silence comes in, and a step from here leads back to here: so do all that follow. True when that
// is the case; `samples`, zeros until now, then hold what comes out.
bool ResonanceFilter::rest(const DelayLine::Loop& loop, float* samples,
                           std::uint32_t frames) const noexcept {
    float held = 0.f;
    if (!m_steady.holds(loop, held))
        return false;
    Resonator resonator(m_data);
    const float written = resonator.step(0.f, held);
    if (!sameBits(written, held) || !sameBits(resonator.state1, m_data.state1) ||
        !sameBits(resonator.state2, m_data.state2))
        return false;
    if (resonator.state2 != 0.f)
        std::fill_n(samples, frames, resonator.state2);
    return true;
}

OSStatus ResonanceFilter::render(void* context, AudioUnitRenderActionFlags* flags,
                                 const AudioTimeStamp* time, std::uint32_t, std::uint32_t frames,
                                 AudioBufferList* data) {
    auto& unit = *static_cast<ResonanceFilter*>(context);
    const DelayLine::Loop loop = unit.m_line.enter();
    const bool silent = pullUpstream(unit, flags, time, frames, data);
    if (loop.length == 0) {
        unit.m_line.leave(0);
        return noErr;
    }
    float* samples = data->samples<float>();
    if (!silent || !unit.rest(loop, samples, frames)) {
        unit.resonate(loop, samples, frames);
        silent ? unit.m_steady.look(loop, frames) : unit.m_steady.forget();
        markSilence(flags, false);
    } else {
        markSilence(flags, unit.m_data.state2 == 0.f);
    }
    unit.m_line.leave(loop.positionAfter(frames));
    return noErr;
}
