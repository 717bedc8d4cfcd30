#include "audiounits/AudioUnit.h"

OSStatus AudioUnitSetProperty(AudioUnit unit, AudioUnitPropertyID property, AudioUnitScope scope,
                              AudioUnitElement element, const void* data, std::uint32_t size) {
    if (!unit || !data)
        return kAudio_ParamError;
    return unit->setProperty(property, scope, element, data, size);
}

OSStatus AudioUnitGetPropertyInfo(AudioUnit unit, AudioUnitPropertyID property,
                                  AudioUnitScope scope, AudioUnitElement element,
                                  std::uint32_t* size) {
    if (!unit || !size)
        return kAudio_ParamError;
    return unit->propertyInfo(property, scope, element, size);
}

OSStatus AudioUnitGetProperty(AudioUnit unit, AudioUnitPropertyID property, AudioUnitScope scope,
                              AudioUnitElement element, void* data, std::uint32_t* size) {
    if (!unit || !data || !size)
        return kAudio_ParamError;
    return unit->property(property, scope, element, data, size);
}

OSStatus AudioUnitSetParameter(AudioUnit unit, AudioUnitParameterID parameter, AudioUnitScope scope,
                               AudioUnitElement element, AudioUnitParameterValue value) {
    return unit ? unit->setParameter(parameter, scope, element, value) : kAudio_ParamError;
}

OSStatus AudioUnitGetParameter(AudioUnit unit, AudioUnitParameterID parameter, AudioUnitScope scope,
                               AudioUnitElement element, AudioUnitParameterValue* value) {
    if (!unit || !value)
        return kAudio_ParamError;
    return unit->parameter(parameter, scope, element, value);
}

OSStatus AudioUnitInitialize(AudioUnit unit) {
    return unit ? unit->initialise() : kAudio_ParamError;
}

OSStatus AudioUnitUninitialize(AudioUnit unit) {
    return unit ? unit->uninitialise() : kAudio_ParamError;
}

OSStatus AudioUnitRender(AudioUnit unit, AudioUnitRenderActionFlags* flags,
                         const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                         AudioBufferList* data) {
    if (!unit || !flags || !time || !data)
        return kAudio_ParamError;
    return unit->render(flags, time, bus, frames, data);
}

OSStatus AudioOutputUnitStart(AudioUnit unit) {
    return unit ? unit->start() : kAudio_ParamError;
}

OSStatus AudioOutputUnitStop(AudioUnit unit) {
    return unit ? unit->stop() : kAudio_ParamError;
}
