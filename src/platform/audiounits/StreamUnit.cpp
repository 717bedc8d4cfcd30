#include "audiounits/StreamUnit.h"

#include "audiounits/PropertyValue.h"
#include "audiounits/StreamConversion.h"
#include "audiounits/devices/AudioDevice.h"

bool StreamUnit::takes(const StreamDescription& format) const {
    return StreamConversion::supports(format);
}

OSStatus StreamUnit::checkRender(bool initialised, std::uint32_t bus, std::uint32_t frames) {
    if (!initialised)
        return kAudioUnitErr_Uninitialized;
    if (bus != 0)
        return kAudioUnitErr_InvalidElement;
    return frames > kMaximumDeviceFrames ? kAudioUnitErr_TooManyFramesToProcess : noErr;
}

OSStatus StreamUnit::setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                                 AudioUnitElement element, const void* data, std::uint32_t size) {
    switch (property) {
        case kAudioUnitProperty_StreamFormat:
            return setFormat(scope, element, data, size);
        case kAudioUnitProperty_MakeConnection:
        case kAudioUnitProperty_SetRenderCallback:
            return m_inputs.setProperty(property, scope, element, data, size);
        default:
            return kAudioUnitErr_InvalidProperty;
    }
}

OSStatus StreamUnit::setFormat(AudioUnitScope scope, AudioUnitElement element, const void* data,
                               std::uint32_t size) {
    StreamDescription format;
    if (const OSStatus wrong = PropertyValue::read(data, size, format))
        return wrong;
    if (!takes(format))
        return kAudioUnitErr_FormatNotSupported;
    if (scope == kAudioUnitScope_Input)
        return m_inputs.setProperty(kAudioUnitProperty_StreamFormat, scope, element, data, size);
    if (scope != kAudioUnitScope_Output)
        return kAudioUnitErr_InvalidScope;
    if (element != 0)
        return kAudioUnitErr_InvalidElement;
    m_output = format;
    return noErr;
}

OSStatus StreamUnit::propertyInfo(AudioUnitPropertyID property, AudioUnitScope, AudioUnitElement,
                                  std::uint32_t* size) {
    if (property == kAudioUnitProperty_StreamFormat)
        *size = sizeof(StreamDescription);
    else if (property == kAudioUnitProperty_ElementCount)
        *size = sizeof(std::uint32_t);
    else
        return kAudioUnitErr_InvalidProperty;
    return noErr;
}

OSStatus StreamUnit::property(AudioUnitPropertyID property, AudioUnitScope scope,
                              AudioUnitElement element, void* data, std::uint32_t* size) {
    const bool input = scope == kAudioUnitScope_Input;
    if (!input && scope != kAudioUnitScope_Output)
        return kAudioUnitErr_InvalidScope;
    const auto& buses = m_inputs.table();
    const std::uint32_t count = input ? static_cast<std::uint32_t>(buses.size()) : 1;
    if (property == kAudioUnitProperty_ElementCount)
        return PropertyValue::write(count, data, size);
    if (property != kAudioUnitProperty_StreamFormat)
        return kAudioUnitErr_InvalidProperty;
    if (element >= count)
        return kAudioUnitErr_InvalidElement;
    return PropertyValue::write(input ? buses[element].format : m_output, data, size);
}
