#pragma once

#include <cstdint>
#include <string>

#include "audiounits/StreamDescription.h"

/// Status of a platform call: 0 is success.
using OSStatus = std::int32_t;

inline constexpr OSStatus noErr = 0;
inline constexpr OSStatus kAudio_ParamError = -50;
inline constexpr OSStatus kAudioUnitErr_InvalidScope = -10866;
inline constexpr OSStatus kAudioUnitErr_Uninitialized = -10867;
inline constexpr OSStatus kAudioUnitErr_FormatNotSupported = -10868;
inline constexpr OSStatus kAudioUnitErr_TooManyFramesToProcess = -10874;
inline constexpr OSStatus kAudioUnitErr_FailedInitialization = -10875;
inline constexpr OSStatus kAudioUnitErr_NoConnection = -10876;
inline constexpr OSStatus kAudioUnitErr_InvalidElement = -10877;
inline constexpr OSStatus kAudioUnitErr_InvalidParameter = -10878;
inline constexpr OSStatus kAudioUnitErr_InvalidParameterValue = -66743;  // out of its range
inline constexpr OSStatus kAudioUnitErr_InvalidProperty = -10879;
inline constexpr OSStatus kAudioUnitErr_InvalidPropertyValue = -10851;  // wrong size included
inline constexpr OSStatus kAudioUnitErr_PropertyNotWritable = -10865;
inline constexpr OSStatus kAudioUnitErr_NotAnOutputUnit = static_cast<OSStatus>(0x80008002);

using AudioUnitPropertyID = std::uint32_t;
inline constexpr AudioUnitPropertyID kAudioUnitProperty_MakeConnection = 1;
inline constexpr AudioUnitPropertyID kAudioUnitProperty_StreamFormat = 8;
inline constexpr AudioUnitPropertyID kAudioUnitProperty_ElementCount = 11;
inline constexpr AudioUnitPropertyID kAudioUnitProperty_MaximumFramesPerSlice = 14;
inline constexpr AudioUnitPropertyID kAudioUnitProperty_SetRenderCallback = 23;
inline constexpr AudioUnitPropertyID kAudioUnitProperty_FactoryPresets = 24;
inline constexpr AudioUnitPropertyID kAudioUnitProperty_PresentPreset = 36;
inline constexpr AudioUnitPropertyID kAudioOutputUnitProperty_EnableIO = 2003;
inline constexpr AudioUnitPropertyID kAudioOutputUnitProperty_SetInputCallback = 2005;

using AudioUnitParameterID = std::uint32_t;
inline constexpr AudioUnitParameterID k3DMixerParam_Azimuth = 0;    // degrees, to the right
inline constexpr AudioUnitParameterID k3DMixerParam_Elevation = 1;  // degrees, upwards
inline constexpr AudioUnitParameterID k3DMixerParam_Distance = 2;   // metres
inline constexpr AudioUnitParameterID k3DMixerParam_Gain = 3;       // decibels
using AudioUnitParameterValue = float;

using AudioUnitScope = std::uint32_t;
inline constexpr AudioUnitScope kAudioUnitScope_Global = 0;
inline constexpr AudioUnitScope kAudioUnitScope_Input = 1;
inline constexpr AudioUnitScope kAudioUnitScope_Output = 2;

using AudioUnitElement = std::uint32_t;

/// Bits that travel along a render. A unit that sets OutputIsSilence has also written zeros.
using AudioUnitRenderActionFlags = std::uint32_t;
inline constexpr AudioUnitRenderActionFlags kAudioUnitRenderAction_OutputIsSilence = 1u << 4;

/// When a render happens.
struct AudioTimeStamp {
    double mSampleTime = 0.0;  // frames since the device started
    double mHostTime = 0.0;    // seconds on the monotonic clock
};

struct AudioBuffer {
    std::uint32_t mNumberChannels = 0;  // interleaved in this buffer
    std::uint32_t mDataByteSize = 0;
    void* mData = nullptr;
};

/// One interleaved buffer, or two mono ones. More than two channels do not occur.
struct AudioBufferList {
    std::uint32_t mNumberBuffers = 0;
    AudioBuffer mBuffers[2];

    static AudioBufferList single(void* data, std::uint32_t channels, std::uint32_t bytes) {
        return {1, {{channels, bytes, data}, {}}};
    }
    template <typename Sample>
    Sample* samples(std::uint32_t buffer = 0) const {
        return static_cast<Sample*>(mBuffers[buffer].mData);
    }
};

/// [render] Fills `ioData` with `frames` frames of bus `bus`; returns a status.
using AURenderCallback = OSStatus (*)(void* refCon, AudioUnitRenderActionFlags* flags,
                                      const AudioTimeStamp* time, std::uint32_t bus,
                                      std::uint32_t frames, AudioBufferList* ioData);

struct AURenderCallbackStruct {
    AURenderCallback inputProc = nullptr;
    void* inputProcRefCon = nullptr;
};

class AudioUnitInstance;
using AudioUnit = AudioUnitInstance*;

struct AudioUnitConnection {
    AudioUnit sourceAudioUnit = nullptr;
    std::uint32_t sourceOutputNumber = 0;
    std::uint32_t destInputNumber = 0;
};

struct AudioComponentDescription {
    std::uint32_t componentType = 0;
    std::uint32_t componentSubType = 0;
    std::uint32_t componentManufacturer = 0;
    std::uint32_t componentFlags = 0;
    std::uint32_t componentFlagsMask = 0;
};

/// A factory preset of a component.
struct AUPreset {
    std::int32_t presetNumber = 0;
    std::string presetName;
};
