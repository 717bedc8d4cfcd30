#include "audiounits/InputBuses.h"

#include "audiounits/AudioUnit.h"
#include "audiounits/PropertyValue.h"
#include "audiounits/StreamConversion.h"

OSStatus InputBus::pull(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                        AudioUnitElement element, std::uint32_t frames,
                        AudioBufferList* list) const noexcept {
    if (connection.sourceAudioUnit)
        return AudioUnitRender(connection.sourceAudioUnit, flags, time,
                               connection.sourceOutputNumber, frames, list);
    if (callback.inputProc)
        return callback.inputProc(callback.inputProcRefCon, flags, time, element, frames, list);
    return kAudioUnitErr_NoConnection;
}

InputBuses::InputBuses(std::uint32_t count) {
    publish(Table(count));
}

void InputBuses::setCount(std::uint32_t count) {
    Table changed = table();
    changed.resize(count);
    publish(std::move(changed));
}

OSStatus InputBuses::setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                                 AudioUnitElement element, const void* data, std::uint32_t size) {
    if (scope != kAudioUnitScope_Input)
        return kAudioUnitErr_InvalidScope;
    if (element >= table().size())
        return kAudioUnitErr_InvalidElement;
    if (property == kAudioUnitProperty_MakeConnection) {
        AudioUnitConnection connection;
        if (const OSStatus wrong = PropertyValue::read(data, size, connection))
            return wrong;
        return connect(element, connection);
    }
    Table changed = table();
    InputBus& bus = changed[element];
    OSStatus status = kAudioUnitErr_InvalidProperty;
    if (property == kAudioUnitProperty_SetRenderCallback) {
        status = PropertyValue::read(data, size, bus.callback);
        if (bus.callback.inputProc)
            bus.connection = {};
    } else if (property == kAudioUnitProperty_StreamFormat)
        status = PropertyValue::read(data, size, bus.format);
    if (status == noErr && !StreamConversion::supports(bus.format))
        status = kAudioUnitErr_FormatNotSupported;
    if (status == noErr)
        publish(std::move(changed));
    return status;
}

OSStatus InputBuses::connect(AudioUnitElement element, const AudioUnitConnection& connection) {
    Table changed = table();
    if (connection.sourceAudioUnit) {
        std::uint32_t size = sizeof(StreamDescription);
        const OSStatus status = AudioUnitGetProperty(
            connection.sourceAudioUnit, kAudioUnitProperty_StreamFormat, kAudioUnitScope_Output,
            connection.sourceOutputNumber, &changed[element].format, &size);
        if (status != noErr)
            return status;
        changed[element].callback = {};
    }
    changed[element].connection = connection;
    publish(std::move(changed));
    return noErr;
}

void InputBuses::publish(Table table) {
    m_tables.push_back(std::make_unique<const Table>(std::move(table)));
    m_current.store(m_tables.back().get(), std::memory_order_release);
}
