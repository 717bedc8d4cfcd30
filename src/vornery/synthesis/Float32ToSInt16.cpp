#include "Float32ToSInt16.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "PullUpstream.h"

namespace {

constexpr float kFullScale = 32768.f;
constexpr std::int32_t kInfinity = 0x7f800000;  // bits
constexpr float kLargest = 32767.f;             // at both ends

// The largest magnitude, not-a-number left out. Magnitudes are in order as integers, too.
float peakOf(const float* samples, std::uint32_t frames) {
    std::int32_t peak = 0;
    const auto count = static_cast<std::int32_t>(frames);
    for (std::int32_t k = 0; k < count; ++k) {
        const std::int32_t level = std::bit_cast<std::int32_t>(samples[k]) & 0x7fffffff;
        peak = level > peak ? level : peak;
    }
    if (peak <= kInfinity)
        return std::bit_cast<float>(peak);
    float largest = 0.f;
    for (std::int32_t k = 0; k < count; ++k)
        if (std::fabs(samples[k]) > largest)
            largest = std::fabs(samples[k]);
    return largest;
}

// As 0 to 1 of full scale. Samples lie within 32767 on both sides.
float loudestOf(const std::int16_t* samples, std::uint32_t frames) {
    std::int16_t loudest = 0;
    for (std::uint32_t k = 0; k < frames; ++k) {
        const auto level = static_cast<std::int16_t>(samples[k] < 0 ? -samples[k] : samples[k]);
        loudest = level > loudest ? level : loudest;
    }
    return static_cast<float>(loudest) / kLargest;
}

// Scales by a gain that moves in a straight line, clips and truncates. True when a sample clipped.
bool toIntegers(const float* __restrict samples, std::uint32_t frames, float gain, float step,
                std::int16_t* __restrict out) {
    std::int32_t clipped = 0;
    const auto count = static_cast<std::int32_t>(frames);
    for (std::int32_t k = 0; k < count; ++k) {
        float scaled = samples[k] * (gain + static_cast<float>(k) * step);
        scaled = scaled == scaled ? scaled : 0.f;
        clipped |= std::fabs(scaled) > kLargest ? 1 : 0;
        scaled = scaled > kLargest ? kLargest : scaled;
        scaled = scaled < -kLargest ? -kLargest : scaled;
        out[k] = static_cast<std::int16_t>(static_cast<std::int32_t>(scaled));
    }
    return clipped != 0;
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

void Float32ToSInt16::convert(std::uint32_t frames, bool silent, std::int16_t* out) noexcept {
    const float* samples = m_sourceBuffer.get();
    float gain = kFullScale;
    float step = 0.f;
    if (m_autoGainControl > 0.f) {
        gain = m_internalGainLevel * kFullScale;
        const float reached = gainAfter(silent ? 0.f : peakOf(samples, frames)) * kFullScale;
        step = (reached - gain) / static_cast<float>(frames);
    }
    if (silent) {
        std::fill_n(out, frames, std::int16_t{0});
        return;
    }
    const bool clipped = toIntegers(samples, frames, gain, step, out);
    m_peak = std::max(m_peak.load(), loudestOf(out, frames));
    if (!clipped)
        return;
    m_clippiness = 1.f;
    if (m_notifyClipping)
        m_notifications.post(kAudioClippedNotification);
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
    const bool silent = pullUpstream(unit, flags, time, frames, &source);
    unit.convert(frames, silent, data->samples<std::int16_t>());
    return noErr;
}
