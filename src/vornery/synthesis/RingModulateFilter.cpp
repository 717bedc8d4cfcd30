#include "RingModulateFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "PullUpstream.h"
#include "SineLoop.h"
#include "SteadySum.h"

namespace {

constexpr double kTurn = 2 * std::numbers::pi;
constexpr float kTurnOver = 6.2831855f;  // the smallest float above a turn
constexpr std::uint32_t kBlock = 256;

float phaseStep(float frequency) {
    return static_cast<float>(double{frequency / 44100.f} * kTurn);
}

// One turn at a time is what is wanted. A phase so far out that turns do not change it any more
// goes back to 0, and so does one that is not a number.
float wrapped(float phase) {
    if (phase >= 0.f && phase < kTurnOver)
        return phase;
    while (phase > kTurn) {
        const auto next = static_cast<float>(phase - kTurn);
        if (!(next < phase))
            return 0.f;
        phase = next;
    }
    return std::isfinite(phase) ? phase : 0.f;
}

// The phase after `frames` steps. `write` is told of every stretch: its first frame, its first
// phase and how it goes on.
template <typename Write>
float runPhase(float phase, float step, std::uint32_t frames, Write write) {
    const SteadyStep steadyStep(step);
    for (std::uint32_t k = 0; k < frames;) {
        SteadySum steady = steadyStep.from(phase, kTurnOver, frames - k);
        steady.count = std::max(steady.count, 1u);
        write(k, phase, steady);
        k += steady.count;
        phase = wrapped(steady.last(phase) + step);
    }
    return phase;
}

float modulate(float* samples, std::uint32_t frames, float phase, float step, float depth) {
    // One turn past the first phase, or one per step, and the fast sine would be out of its range.
    const bool usual = phase >= 0.f && phase < kTurnOver && step >= 0.f && step < kTurnOver;
    const auto count = static_cast<std::int32_t>(frames);
    float phases[kBlock] = {};
    float modulator[kBlock];
    phase = runPhase(phase, step, frames, [&](std::uint32_t k, float from, const SteadySum& sum) {
        sum.write(from, phases + k);
    });
    if (usual)
        sines(phases, modulator, frames);
    else
        std::transform(phases, phases + frames, modulator, [](float p) { return std::sin(p); });
    for (std::int32_t k = 0; k < count; ++k)
        samples[k] *= (1.f - depth) + depth * modulator[k];
    return phase;
}

}  // namespace

RingModulateFilter::RingModulateFilter()
    : VornCallbackUnit(&render, StreamDescription::float32(1)) {}

OSStatus RingModulateFilter::render(void* context, AudioUnitRenderActionFlags* flags,
                                    const AudioTimeStamp* time, std::uint32_t, std::uint32_t frames,
                                    AudioBufferList* data) {
    auto& unit = *static_cast<RingModulateFilter*>(context);
    const float step = phaseStep(unit.m_frequency);
    const float depth = unit.m_depth;
    float phase = unit.m_offset;
    const bool silent = pullUpstream(unit, flags, time, frames, data);
    if (depth == 0.f || (silent && std::isfinite(depth))) {
        phase = runPhase(phase, step, frames, [](auto...) {});
    } else {
        float* samples = data->samples<float>();
        for (std::uint32_t k = 0; k < frames; k += kBlock)
            phase = modulate(samples + k, std::min(kBlock, frames - k), phase, step, depth);
    }
    unit.m_offset = phase;
    return noErr;
}
