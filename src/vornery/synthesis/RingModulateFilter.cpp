#include "RingModulateFilter.h"

#include <cmath>
#include <numbers>

#include "PullUpstream.h"

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

float phaseStep(float frequency) {
    return static_cast<float>(double{frequency / 44100.f} * kTurn);
}

// One turn at a time is what is wanted. A phase so far out that turns do not change it any more
// goes back to 0, and so does one that is not a number.
float wrapped(float phase) {
    while (phase > kTurn) {
        const auto next = static_cast<float>(phase - kTurn);
        if (!(next < phase))
            return 0.f;
        phase = next;
    }
    return std::isfinite(phase) ? phase : 0.f;
}

float modulate(float* samples, std::uint32_t frames, float phase, float step, float depth) {
    for (std::uint32_t k = 0; k < frames; ++k) {
        samples[k] *= (1.f - depth) + depth * std::sin(phase);
        phase = wrapped(phase + step);
    }
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
    const float phase = unit.m_offset;
    pullUpstream(unit, flags, time, frames, data);
    unit.m_offset = modulate(data->samples<float>(), frames, phase, step, depth);
    return noErr;
}
