#include "Float32ToSInt16.h"

#include <cmath>

#include "PullUpstream.h"
#include "notifications/NotificationCentre.h"

namespace {

constexpr float kFullScale = 32768.f;
constexpr float kLargest = 32767.f;  // at both ends

float peakOf(const float* samples, std::uint32_t frames) {
    float peak = 0.f;
    for (std::uint32_t k = 0; k < frames; ++k) {
        const float level = std::fabs(samples[k]);
        peak = level > peak ? level : peak;
    }
    return peak;
}

// Scales by a gain that moves in a straight line, clips and truncates. Returns how many clipped.
std::uint32_t toIntegers(const float* samples, std::uint32_t frames, float gain, float step,
                         std::int16_t* out) {
    std::uint32_t clipped = 0;
    for (std::uint32_t k = 0; k < frames; ++k) {
        float scaled = samples[k] * (gain + static_cast<float>(k) * step);
        clipped += scaled > kLargest || scaled < -kLargest;
        scaled = scaled > kLargest ? kLargest : scaled;
        scaled = scaled < -kLargest ? -kLargest : scaled;
        out[k] = scaled == scaled ? static_cast<std::int16_t>(static_cast<std::int32_t>(scaled))
                                  : std::int16_t{0};
    }
    return clipped;
}

}  // namespace

Float32ToSInt16::Float32ToSInt16()
    : VornCallbackUnit(&render, StreamDescription::sint16(1)),
      m_sourceBuffer(std::make_unique<float[]>(kFirstSize)) {}

void Float32ToSInt16::setSourceSize(std::uint32_t frames) {
    if (frames > m_capacity) {
        m_sourceBuffer.reset();
        m_sourceBuffer = std::make_unique<float[]>(frames);
        m_capacity = frames;
    }
    m_sourceSize = frames;
}

// The gain to reach by the end of the buffer: down at once so that the peak meets the target, up
// slowly toward 1. A peak that is the target asks for 1 without remembering it.
float Float32ToSInt16::gainAfter(float peak) noexcept {
    const float target = m_autoGainControl;
    float gain = 1.f;
    if (peak > target)
        gain = target / peak;
    else if (peak < target)
        gain = m_internalGainLevel * 0.999f + 0.001f;
    else
        return gain;
    m_internalGainLevel = gain;
    return gain;
}

void Float32ToSInt16::convert(std::uint32_t frames, std::int16_t* out) noexcept {
    const float* samples = m_sourceBuffer.get();
    float gain = kFullScale;
    float step = 0.f;
    if (m_autoGainControl > 0.f) {
        gain = m_internalGainLevel * kFullScale;
        step =
            (gainAfter(peakOf(samples, frames)) * kFullScale - gain) / static_cast<float>(frames);
    }
    if (toIntegers(samples, frames, gain, step, out) == 0)
        return;
    m_clippiness = 1.f;
    if (m_notifyClipping)
        NotificationCentre::defaultCentre().post(kAudioClippedNotification);
}

OSStatus Float32ToSInt16::render(void* context, AudioUnitRenderActionFlags* flags,
                                 const AudioTimeStamp* time, std::uint32_t, std::uint32_t frames,
                                 AudioBufferList* data) {
    auto& unit = *static_cast<Float32ToSInt16*>(context);
    if (unit.m_sourceSize < frames)
        unit.setSourceSize(frames);
    unit.m_clippiness = unit.m_clippiness * 0.9f;
    AudioBufferList source = AudioBufferList::single(unit.m_sourceBuffer.get(), 1,
                                                     frames * std::uint32_t{sizeof(float)});
    pullUpstream(unit, flags, time, frames, &source);
    unit.convert(frames, data->samples<std::int16_t>());
    return noErr;
}
