#include "audiounits/Equaliser.h"

#include <array>

#include "audiounits/EqualiserPresets.h"
#include "audiounits/PropertyValue.h"
#include "audiounits/StreamConversion.h"
#include "audiounits/devices/AudioDevice.h"

namespace {

constexpr std::size_t kFlat = 0;

AUPreset record(std::size_t number) {
    return {static_cast<std::int32_t>(number), EqualiserPresets::all()[number].name};
}

bool isPresetProperty(AudioUnitPropertyID property) {
    return property == kAudioUnitProperty_FactoryPresets ||
           property == kAudioUnitProperty_PresentPreset;
}

OSStatus checkGlobal(AudioUnitScope scope, AudioUnitElement element) {
    if (scope != kAudioUnitScope_Global)
        return kAudioUnitErr_InvalidScope;
    return element == 0 ? noErr : kAudioUnitErr_InvalidElement;
}

/// The place that a property's value points to, or null.
template <typename T>
T* pointedTo(const void* data, std::uint32_t size) {
    T* place = nullptr;
    return PropertyValue::read(data, size, place) == noErr ? place : nullptr;
}

}  // namespace

struct Equaliser::Workspace {
    explicit Workspace(std::size_t number)
        : preset(number), cascade(EqualiserPresets::curve(number)) {}

    std::size_t preset;  // heard or gliding in
    FilterCascade cascade;
    std::array<std::array<float, kMaximumDeviceFrames>, 2> channels;
};

Equaliser::Equaliser() = default;

Equaliser::~Equaliser() = default;

bool Equaliser::takes(const StreamDescription& format) const {
    return StreamUnit::takes(format) && format.mSampleRate == kGraphRate;
}

OSStatus Equaliser::setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                                AudioUnitElement element, const void* data, std::uint32_t size) {
    if (isPresetProperty(property)) {
        if (const OSStatus wrong = checkGlobal(scope, element))
            return wrong;
        if (property == kAudioUnitProperty_FactoryPresets)
            return kAudioUnitErr_PropertyNotWritable;
        return setPreset(data, size);
    }
    const OSStatus status = property == kAudioUnitProperty_StreamFormat
                                ? setFormat(scope, element, data, size)
                                : StreamUnit::setProperty(property, scope, element, data, size);
    m_output = m_inputs.table()[0].format;
    return status;
}

// What feeds the unit says the format, as long as something does.
OSStatus Equaliser::setFormat(AudioUnitScope scope, AudioUnitElement element, const void* data,
                              std::uint32_t size) {
    const InputBus& input = m_inputs.table()[0];
    StreamDescription format;
    if (scope == kAudioUnitScope_Output) {
        if (const OSStatus wrong = PropertyValue::read(data, size, format))
            return wrong;
        if (input.connected() && format != input.format)
            return kAudioUnitErr_FormatNotSupported;
        scope = kAudioUnitScope_Input;
    }
    return StreamUnit::setProperty(kAudioUnitProperty_StreamFormat, scope, element, data, size);
}

OSStatus Equaliser::setPreset(const void* data, std::uint32_t size) {
    const auto* wanted = pointedTo<const AUPreset>(data, size);
    if (!wanted || wanted->presetNumber < 0)
        return kAudioUnitErr_InvalidPropertyValue;
    const auto number = static_cast<std::size_t>(wanted->presetNumber);
    if (number >= EqualiserPresets::all().size())
        return kAudioUnitErr_InvalidPropertyValue;
    m_preset.store(number, std::memory_order_relaxed);
    return noErr;
}

OSStatus Equaliser::propertyInfo(AudioUnitPropertyID property, AudioUnitScope scope,
                                 AudioUnitElement element, std::uint32_t* size) {
    if (!isPresetProperty(property))
        return StreamUnit::propertyInfo(property, scope, element, size);
    *size = sizeof(void*);
    return checkGlobal(scope, element);
}

OSStatus Equaliser::property(AudioUnitPropertyID property, AudioUnitScope scope,
                             AudioUnitElement element, void* data, std::uint32_t* size) {
    if (!isPresetProperty(property))
        return StreamUnit::property(property, scope, element, data, size);
    if (const OSStatus wrong = checkGlobal(scope, element))
        return wrong;
    if (property == kAudioUnitProperty_PresentPreset) {
        auto* present = pointedTo<AUPreset>(data, *size);
        if (!present)
            return kAudioUnitErr_InvalidPropertyValue;
        *present = record(m_preset.load(std::memory_order_relaxed));
        return noErr;
    }
    auto* list = pointedTo<std::vector<AUPreset>>(data, *size);
    if (!list)
        return kAudioUnitErr_InvalidPropertyValue;
    list->clear();
    for (std::size_t number = 0; number < EqualiserPresets::all().size(); ++number)
        list->push_back(record(number));
    return noErr;
}

OSStatus Equaliser::initialise() {
    if (!takes(m_inputs.table()[0].format))
        return kAudioUnitErr_FormatNotSupported;
    m_workspace = std::make_unique<Workspace>(m_preset.load(std::memory_order_relaxed));
    return noErr;
}

OSStatus Equaliser::uninitialise() {
    m_workspace.reset();
    return noErr;
}

OSStatus Equaliser::render(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                           std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) {
    if (const OSStatus wrong = checkRender(m_workspace != nullptr, bus, frames))
        return wrong;
    const InputBus& input = m_inputs.table()[0];
    *flags &= ~kAudioUnitRenderAction_OutputIsSilence;
    if (const OSStatus status = input.pull(flags, time, 0, frames, data))
        return status;
    auto& [preset, cascade, channels] = *m_workspace;
    if (const std::size_t wanted = m_preset.load(std::memory_order_relaxed); wanted != preset) {
        preset = wanted;
        cascade.glideTo(EqualiserPresets::curve(preset));
    }
    const bool silent = (*flags & kAudioUnitRenderAction_OutputIsSilence) != 0;
    if ((silent || preset == kFlat) && cascade.resting()) {
        cascade.clear();
        return noErr;
    }
    for (std::uint32_t c = 0; c < 2; ++c)
        StreamConversion::read(*data, input.format, c, std::span(channels[c]).first(frames));
    cascade.process(std::span(channels[0]).first(frames), std::span(channels[1]).first(frames));
    for (std::uint32_t c = 0; c < input.format.mChannelsPerFrame; ++c)
        StreamConversion::write(std::span(channels[c]).first(frames), input.format, c, *data);
    *flags &= ~kAudioUnitRenderAction_OutputIsSilence;
    return noErr;
}
