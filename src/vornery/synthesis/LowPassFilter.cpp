#include "LowPassFilter.h"

#include "PullUpstream.h"

namespace {
Shared<float> sharedState = 0.f;
}

LowPassFilter::LowPassFilter() : VornCallbackUnit(&render, StreamDescription::float32(1)) {}

OSStatus LowPassFilter::render(void* context, AudioUnitRenderActionFlags* flags,
                               const AudioTimeStamp* time, std::uint32_t, std::uint32_t frames,
                               AudioBufferList* data) {
    auto& unit = *static_cast<LowPassFilter*>(context);
    const float alpha = unit.m_filterAlpha;
    pullUpstream(unit, flags, time, frames, data);
    markSilence(flags, false);
    float* samples = data->samples<float>();
    float y = sharedState;
    for (std::uint32_t k = 0; k < frames; ++k) {
        y += alpha * (samples[k] - y);
        samples[k] = y;
    }
    sharedState = y;
    return noErr;
}
