#include "devices/InputMeter.h"

#include <algorithm>
#include <cstdlib>

#include "audiounits/devices/AudioDevice.h"
#include "log/Log.h"

namespace {
constexpr float kFullScale = 32768.f;
}

InputMeter::InputMeter() : m_scratch(kMaximumDeviceFrames) {}

void InputMeter::open() {
    if (m_open)
        return;
    m_peak = 0;
    m_open = true;
    m_hardware.enableRecordingVia({input, this}, StreamDescription::sint16(1));
}

void InputMeter::close() {
    if (m_open)
        m_hardware.disableRecording();
    m_open = false;
}

void InputMeter::giveUp() {
    m_open = false;
}

float InputMeter::takePeak() {
    return static_cast<float>(m_peak.exchange(0, std::memory_order_relaxed)) / kFullScale;
}

OSStatus InputMeter::input(void* meter, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList*) {
    auto* const self = static_cast<InputMeter*>(meter);
    if (frames <= self->m_scratch.size())
        self->receive(flags, time, bus, frames);
    return noErr;
}

// A peak that takePeak clears meanwhile is lost or shown twice: it is only looked at.
void InputMeter::receive(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                         std::uint32_t bus, std::uint32_t frames) {
    auto list = AudioBufferList::single(m_scratch.data(), 1, frames * 2);
    Log::status(AudioUnitRender(m_hardware.unit(), flags, time, bus, frames, &list));
    std::int32_t peak = m_peak.load(std::memory_order_relaxed);
    for (std::uint32_t i = 0; i < frames; ++i)
        peak = std::max(peak, std::abs(std::int32_t{m_scratch[i]}));
    m_peak.store(peak, std::memory_order_relaxed);
}
