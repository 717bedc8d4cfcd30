#include "RingModulateFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "PullUpstream.h"
#include "RingPhase.h"
#include "SineLoop.h"

namespace {

constexpr std::uint32_t kBlock = 256;

float phaseStep(float frequency) {
    return static_cast<float>(double{frequency / 44100.f} * (2 * std::numbers::pi));
}

// At most a block; returns the phase after it.
float modulate(float* samples, std::uint32_t frames, const RingPhase& ringPhase, float phase,
               float depth) {
    const auto count = static_cast<std::int32_t>(frames);
    float phases[kBlock] = {};
    float modulator[kBlock];
    bool usual = true;
    phase = ringPhase.run(phase, frames, [&](std::uint32_t k, float from, const SteadySum& sum) {
        usual &= from >= 0.f && from < RingPhase::kTurnOver;
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
    const RingPhase ringPhase(phaseStep(unit.m_frequency), frames);
    const float depth = unit.m_depth;
    float phase = unit.m_offset;
    const bool silent = pullUpstream(unit, flags, time, frames, data);
    if (depth == 0.f || (silent && std::isfinite(depth))) {
        phase = ringPhase.run(phase, frames, [](auto...) {});
    } else {
        float* samples = data->samples<float>();
        for (std::uint32_t k = 0; k < frames; k += kBlock)
            phase = modulate(samples + k, std::min(kBlock, frames - k), ringPhase, phase, depth);
    }
    unit.m_offset = phase;
    return noErr;
}
