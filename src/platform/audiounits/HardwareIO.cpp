#include "audiounits/HardwareIO.h"

#include <algorithm>
#include <array>

#include "audiounits/PropertyValue.h"
#include "audiounits/devices/AudioDevices.h"
#include "log/Log.h"

namespace {

constexpr AudioUnitElement kOutputElement = 0;
constexpr AudioUnitElement kInputElement = 1;

/// The side of an element that faces the program, where formats can be set.
bool facesProgram(AudioUnitScope scope, AudioUnitElement element) {
    return (scope == kAudioUnitScope_Input && element == kOutputElement) ||
           (scope == kAudioUnitScope_Output && element == kInputElement);
}

}  // namespace

struct HardwareIO::Workspace {
    StreamScratch scratch{kMaximumDeviceFrames};
    std::array<float, kMaximumDeviceFrames> left;
    std::array<float, kMaximumDeviceFrames> right;
};

HardwareIO::HardwareIO() = default;

HardwareIO::~HardwareIO() {
    stop();
}

OSStatus HardwareIO::setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                                 AudioUnitElement element, const void* data, std::uint32_t size) {
    switch (property) {
        case kAudioOutputUnitProperty_EnableIO:
            return setEnabled(scope, element, data, size);
        case kAudioOutputUnitProperty_SetInputCallback:
            return setInputCallback(data, size);
        case kAudioUnitProperty_StreamFormat:
            return setFormat(scope, element, data, size);
        case kAudioUnitProperty_MakeConnection:
        case kAudioUnitProperty_SetRenderCallback:
            return m_inputs.setProperty(property, scope, element, data, size);
        default:
            return kAudioUnitErr_InvalidProperty;
    }
}

// One byte or a 32-bit number: both are in use.
OSStatus HardwareIO::setEnabled(AudioUnitScope scope, AudioUnitElement element, const void* data,
                                std::uint32_t size) {
    std::uint8_t byte = 0;
    std::uint32_t number = 0;
    if (PropertyValue::read(data, size, byte) != noErr &&
        PropertyValue::read(data, size, number) != noErr)
        return kAudioUnitErr_InvalidPropertyValue;
    const bool enabled = byte != 0 || number != 0;
    if (scope == kAudioUnitScope_Output && element == kOutputElement)
        m_outputEnabled = enabled;
    else if (scope == kAudioUnitScope_Input && element == kInputElement)
        m_inputEnabled = enabled;
    else
        return element > kInputElement ? kAudioUnitErr_InvalidElement : kAudioUnitErr_InvalidScope;
    return noErr;
}

OSStatus HardwareIO::setFormat(AudioUnitScope scope, AudioUnitElement element, const void* data,
                               std::uint32_t size) {
    StreamDescription format;
    if (const OSStatus wrong = PropertyValue::read(data, size, format))
        return wrong;
    if (element > kInputElement)
        return kAudioUnitErr_InvalidElement;
    if (scope != kAudioUnitScope_Input && scope != kAudioUnitScope_Output)
        return kAudioUnitErr_InvalidScope;
    if (!facesProgram(scope, element))
        return kAudioUnitErr_PropertyNotWritable;
    if (!StreamConversion::supports(format) || format.mSampleRate != kGraphRate)
        return kAudioUnitErr_FormatNotSupported;
    if (element == kOutputElement)
        return m_inputs.setProperty(kAudioUnitProperty_StreamFormat, scope, element, data, size);
    m_captureFormat = format;
    return noErr;
}

OSStatus HardwareIO::setInputCallback(const void* data, std::uint32_t size) {
    AURenderCallbackStruct callback;
    if (const OSStatus wrong = PropertyValue::read(data, size, callback))
        return wrong;
    // The capture stream is open only while somebody listens, so a running device starts anew.
    const bool running = m_device != nullptr;
    if (running)
        stop();
    m_inputCallback = callback;
    return running ? start() : noErr;
}

OSStatus HardwareIO::propertyInfo(AudioUnitPropertyID property, AudioUnitScope, AudioUnitElement,
                                  std::uint32_t* size) {
    switch (property) {
        case kAudioUnitProperty_StreamFormat:
            *size = sizeof(StreamDescription);
            return noErr;
        case kAudioOutputUnitProperty_EnableIO:
            *size = sizeof(std::uint32_t);
            return noErr;
        default:
            return kAudioUnitErr_InvalidProperty;
    }
}

OSStatus HardwareIO::property(AudioUnitPropertyID property, AudioUnitScope scope,
                              AudioUnitElement element, void* data, std::uint32_t* size) {
    if (scope != kAudioUnitScope_Input && scope != kAudioUnitScope_Output)
        return kAudioUnitErr_InvalidScope;
    if (element > kInputElement)
        return kAudioUnitErr_InvalidElement;
    if (property == kAudioOutputUnitProperty_EnableIO) {
        const bool enabled = element == kOutputElement ? m_outputEnabled : m_inputEnabled;
        return PropertyValue::write(std::uint32_t{enabled}, data, size);
    }
    if (property != kAudioUnitProperty_StreamFormat)
        return kAudioUnitErr_InvalidProperty;
    if (!facesProgram(scope, element))  // what the device itself is given and gives
        return PropertyValue::write(StreamDescription::sint16(1), data, size);
    return PropertyValue::write(
        element == kOutputElement ? m_inputs.table()[0].format : m_captureFormat, data, size);
}

OSStatus HardwareIO::initialise() {
    m_workspace = std::make_unique<Workspace>();
    return noErr;
}

OSStatus HardwareIO::uninitialise() {
    stop();
    m_workspace.reset();
    return noErr;
}

OSStatus HardwareIO::start() {
    if (!m_workspace)
        return kAudioUnitErr_Uninitialized;
    if (m_device)
        return noErr;
    auto device = AudioDevices::current();
    const OSStatus status = device->start(*this, captures());
    if (status == noErr)
        m_device = std::move(device);
    return status;
}

OSStatus HardwareIO::stop() {
    if (const auto device = std::move(m_device))
        device->stop();
    m_device.reset();
    return noErr;
}

void HardwareIO::produce(std::span<std::int16_t> mono, const AudioTimeStamp& time) noexcept {
    const auto frames = static_cast<std::uint32_t>(mono.size());
    const InputBus& bus = m_inputs.table()[0];
    AudioUnitRenderActionFlags flags = 0;
    OSStatus status = kAudioUnitErr_NoConnection;
    if (m_outputEnabled && bus.format == StreamDescription::sint16(1)) {
        auto list = AudioBufferList::single(mono.data(), 1, frames * 2);
        status = bus.pull(&flags, &time, kOutputElement, frames, &list);
    } else if (m_outputEnabled) {
        AudioBufferList list = m_workspace->scratch.list(bus.format, frames);
        status = bus.pull(&flags, &time, kOutputElement, frames, &list);
        auto left = std::span(m_workspace->left).first(frames);
        auto right = std::span(m_workspace->right).first(frames);
        StreamConversion::read(list, bus.format, 0, left);
        StreamConversion::read(list, bus.format, 1, right);
        for (std::uint32_t i = 0; i < frames; ++i)
            left[i] = (left[i] + right[i]) * 0.5f;
        auto out = AudioBufferList::single(mono.data(), 1, frames * 2);
        StreamConversion::write(left, StreamDescription::sint16(1), 0, out);
    }
    if (status != noErr) {
        std::ranges::fill(mono, std::int16_t{0});
        if (status != kAudioUnitErr_NoConnection)
            Log::status(status);
    }
}

void HardwareIO::consume(std::span<const std::int16_t> mono, const AudioTimeStamp& time) noexcept {
    m_captured = mono;
    AudioUnitRenderActionFlags flags = 0;
    const auto frames = static_cast<std::uint32_t>(mono.size());
    Log::status(m_inputCallback.inputProc(m_inputCallback.inputProcRefCon, &flags, &time,
                                          kInputElement, frames, nullptr));
    m_captured = {};
}

OSStatus HardwareIO::render(AudioUnitRenderActionFlags*, const AudioTimeStamp*, std::uint32_t bus,
                            std::uint32_t frames, AudioBufferList* data) {
    if (!m_workspace)
        return kAudioUnitErr_Uninitialized;
    if (bus != kInputElement)
        return kAudioUnitErr_InvalidElement;
    if (frames > m_captured.size())
        return kAudioUnitErr_TooManyFramesToProcess;
    const auto captured = AudioBufferList::single(const_cast<std::int16_t*>(m_captured.data()), 1,
                                                  frames * 2);  // only read from
    auto channel = std::span(m_workspace->right).first(frames);
    StreamConversion::read(captured, StreamDescription::sint16(1), 0, channel);
    for (std::uint32_t c = 0; c < m_captureFormat.mChannelsPerFrame; ++c)
        StreamConversion::write(channel, m_captureFormat, c, *data);
    return noErr;
}
