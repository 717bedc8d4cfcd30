#include "audiounits/BusMixer.h"

#include <algorithm>

#include "audiounits/PropertyValue.h"
#include "log/Log.h"

OSStatus BusMixer::setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                               AudioUnitElement element, const void* data, std::uint32_t size) {
    if (property == kAudioUnitProperty_ElementCount)
        return setBusCount(scope, data, size);
    return StreamUnit::setProperty(property, scope, element, data, size);
}

OSStatus BusMixer::setBusCount(AudioUnitScope scope, const void* data, std::uint32_t size) {
    std::uint32_t count = 0;
    if (const OSStatus wrong = PropertyValue::read(data, size, count))
        return wrong;
    if (scope != kAudioUnitScope_Input)
        return kAudioUnitErr_PropertyNotWritable;
    if (count > kMaximumBuses)
        return kAudioUnitErr_InvalidPropertyValue;
    m_inputs.setCount(count);
    return noErr;
}

bool BusMixer::takes(const StreamDescription& format) const {
    return StreamUnit::takes(format) && format.mSampleRate == kGraphRate;
}

OSStatus BusMixer::initialise() {
    m_workspace = std::make_unique<Workspace>();
    return noErr;
}

OSStatus BusMixer::uninitialise() {
    m_workspace.reset();
    return noErr;
}

OSStatus BusMixer::render(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                          std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) {
    if (const OSStatus wrong = checkRender(m_workspace != nullptr, bus, frames))
        return wrong;
    const auto& buses = m_inputs.table();
    if (!passThrough(buses, flags, time, frames, data))
        mix(buses, flags, time, frames, data);
    return noErr;
}

bool BusMixer::passThrough(const InputBuses::Table& buses, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t frames,
                           AudioBufferList* data) noexcept {
    const auto connected = [](const InputBus& bus) { return bus.connected(); };
    const auto only = std::ranges::find_if(buses, connected);
    if (only == buses.end() || std::ranges::count_if(buses, connected) != 1)
        return false;
    if (only->format != m_output || m_output != StreamDescription::sint16(1))
        return false;
    const auto element = static_cast<AudioUnitElement>(only - buses.begin());
    if (!leavesAlone(element))
        return false;
    *flags &= ~kAudioUnitRenderAction_OutputIsSilence;
    const OSStatus status = only->pull(flags, time, element, frames, data);
    if (status != noErr) {
        Log::status(status);
        StreamConversion::clear(*data, m_output, frames);
        *flags |= kAudioUnitRenderAction_OutputIsSilence;
    }
    return true;
}

void BusMixer::mix(const InputBuses::Table& buses, AudioUnitRenderActionFlags* flags,
                   const AudioTimeStamp* time, std::uint32_t frames,
                   AudioBufferList* data) noexcept {
    auto& sums = m_workspace->sums;
    for (auto& sum : sums)
        std::fill_n(sum.begin(), frames, 0.f);
    bool heard = false;
    for (AudioUnitElement element = 0; element < buses.size(); ++element) {
        if (buses[element].connected())
            heard |= addBus(buses[element], element, time, frames);
    }
    if (m_output.mChannelsPerFrame == 1) {
        for (std::uint32_t i = 0; i < frames; ++i)
            sums[0][i] = (sums[0][i] + sums[1][i]) * 0.5f;
    }
    for (std::uint32_t channel = 0; channel < m_output.mChannelsPerFrame; ++channel)
        StreamConversion::write({sums[channel].data(), frames}, m_output, channel, *data);
    if (heard)
        *flags &= ~kAudioUnitRenderAction_OutputIsSilence;
    else
        *flags |= kAudioUnitRenderAction_OutputIsSilence;
}

bool BusMixer::addBus(const InputBus& bus, AudioUnitElement element, const AudioTimeStamp* time,
                      std::uint32_t frames) noexcept {
    AudioUnitRenderActionFlags flags = 0;
    AudioBufferList pulled = m_workspace->scratch.list(bus.format, frames);
    if (const OSStatus status = bus.pull(&flags, time, element, frames, &pulled)) {
        Log::status(status);
        return false;
    }
    if (flags & kAudioUnitRenderAction_OutputIsSilence)
        return false;
    add({element, bus.format, pulled, frames}, *m_workspace);
    return true;
}
