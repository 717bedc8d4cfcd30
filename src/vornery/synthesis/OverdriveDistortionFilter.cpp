#include "OverdriveDistortionFilter.h"

#include <cmath>

#include "PullUpstream.h"

namespace {

void drive(float* samples, std::uint32_t frames, float exponent) {
    for (std::uint32_t k = 0; k < frames; ++k) {
        const float x = samples[k];
        samples[k] = x >= 0.f ? std::pow(x, exponent) : -std::pow(-x, exponent);
    }
}

}  // namespace

OverdriveDistortionFilter::OverdriveDistortionFilter()
    : VornCallbackUnit(&render, StreamDescription::float32(1)) {}

OSStatus OverdriveDistortionFilter::render(void* context, AudioUnitRenderActionFlags* flags,
                                           const AudioTimeStamp* time, std::uint32_t,
                                           std::uint32_t frames, AudioBufferList* data) {
    auto& unit = *static_cast<OverdriveDistortionFilter*>(context);
    const float exponent = 1.f - unit.m_strength;
    const bool silent = pullUpstream(unit, flags, time, frames, data);
    if (!(exponent < 1.f) || (silent && exponent > 0.f))
        return noErr;
    markSilence(flags, false);  // nothing to the power of nothing is one
    drive(data->samples<float>(), frames, exponent);
    return noErr;
}
