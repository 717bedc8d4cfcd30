#pragma once

#include "audiounits/AudioUnitTypes.h"

/// One instance of an audio component. [control] except where said.
class AudioUnitInstance {
  public:
    AudioUnitInstance() = default;
    AudioUnitInstance(const AudioUnitInstance&) = delete;
    AudioUnitInstance& operator=(const AudioUnitInstance&) = delete;
    virtual ~AudioUnitInstance() = default;

    virtual OSStatus setProperty(AudioUnitPropertyID property, AudioUnitScope scope,
                                 AudioUnitElement element, const void* data,
                                 std::uint32_t size) = 0;
    /// Size in bytes of the property's value.
    virtual OSStatus propertyInfo(AudioUnitPropertyID property, AudioUnitScope scope,
                                  AudioUnitElement element, std::uint32_t* size) = 0;
    /// `size`: in, room at `data`; out, bytes written.
    virtual OSStatus property(AudioUnitPropertyID property, AudioUnitScope scope,
                              AudioUnitElement element, void* data, std::uint32_t* size) = 0;
    /// [any thread] A value that may change while audio runs; takes effect at the next render.
    virtual OSStatus setParameter(AudioUnitParameterID, AudioUnitScope, AudioUnitElement,
                                  AudioUnitParameterValue) {
        return kAudioUnitErr_InvalidParameter;
    }
    /// [any thread]
    virtual OSStatus parameter(AudioUnitParameterID, AudioUnitScope, AudioUnitElement,
                               AudioUnitParameterValue*) {
        return kAudioUnitErr_InvalidParameter;
    }
    virtual OSStatus initialise() = 0;
    virtual OSStatus uninitialise() = 0;
    /// [render] `frames` frames of output bus `bus`, in that bus's stream format.
    virtual OSStatus render(AudioUnitRenderActionFlags* flags, const AudioTimeStamp* time,
                            std::uint32_t bus, std::uint32_t frames, AudioBufferList* data) = 0;
    /// Output units only: begin and end pulling. `stop` returns when no render is under way.
    virtual OSStatus start() { return kAudioUnitErr_NotAnOutputUnit; }
    virtual OSStatus stop() { return kAudioUnitErr_NotAnOutputUnit; }
};

/// The same calls for a unit that may be null, which is a bad argument.
OSStatus AudioUnitSetProperty(AudioUnit unit, AudioUnitPropertyID property, AudioUnitScope scope,
                              AudioUnitElement element, const void* data, std::uint32_t size);
OSStatus AudioUnitGetPropertyInfo(AudioUnit unit, AudioUnitPropertyID property,
                                  AudioUnitScope scope, AudioUnitElement element,
                                  std::uint32_t* size);
OSStatus AudioUnitGetProperty(AudioUnit unit, AudioUnitPropertyID property, AudioUnitScope scope,
                              AudioUnitElement element, void* data, std::uint32_t* size);
/// [any thread]
OSStatus AudioUnitSetParameter(AudioUnit unit, AudioUnitParameterID parameter, AudioUnitScope scope,
                               AudioUnitElement element, AudioUnitParameterValue value);
/// [any thread]
OSStatus AudioUnitGetParameter(AudioUnit unit, AudioUnitParameterID parameter, AudioUnitScope scope,
                               AudioUnitElement element, AudioUnitParameterValue* value);
OSStatus AudioUnitInitialize(AudioUnit unit);
OSStatus AudioUnitUninitialize(AudioUnit unit);
/// [render]
OSStatus AudioUnitRender(AudioUnit unit, AudioUnitRenderActionFlags* flags,
                         const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                         AudioBufferList* data);
OSStatus AudioOutputUnitStart(AudioUnit unit);
OSStatus AudioOutputUnitStop(AudioUnit unit);
