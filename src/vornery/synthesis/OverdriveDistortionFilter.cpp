#include "OverdriveDistortionFilter.h"

#include "PowerLoop.h"
#include "PullUpstream.h"

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
    raiseToPower(data->samples<float>(), frames, exponent);
    return noErr;
}
