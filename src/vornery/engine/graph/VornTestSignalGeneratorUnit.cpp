#include "graph/VornTestSignalGeneratorUnit.h"

#include <cmath>

namespace {
constexpr float kRadiansPerFrame = static_cast<float>(0.12537875771522522);  // 2 pi 440 / 22050
constexpr float kLevel = 8000.f;
}  // namespace

VornTestSignalGeneratorUnit::VornTestSignalGeneratorUnit()
    : VornCallbackUnit(render, StreamDescription::sint16(1, 22050.0)) {}

OSStatus VornTestSignalGeneratorUnit::render(void*, AudioUnitRenderActionFlags*,
                                             const AudioTimeStamp* time, std::uint32_t,
                                             std::uint32_t frames, AudioBufferList* data) {
    auto* out = data->samples<std::int16_t>();
    const auto start = static_cast<float>(time->mSampleTime);
    for (std::uint32_t k = 0; k < frames; ++k)
        out[k] = static_cast<std::int16_t>(
            std::sin((static_cast<float>(k) + start) * kRadiansPerFrame) * kLevel);
    return noErr;
}
