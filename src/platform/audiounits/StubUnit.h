#pragma once
#include "audiounits/AudioUnit.h"
struct StubUnit : AudioUnitInstance {
    OSStatus setProperty(AudioUnitPropertyID, AudioUnitScope, AudioUnitElement, const void*, std::uint32_t) override { return -1; }
    OSStatus propertyInfo(AudioUnitPropertyID, AudioUnitScope, AudioUnitElement, std::uint32_t*) override { return -1; }
    OSStatus property(AudioUnitPropertyID, AudioUnitScope, AudioUnitElement, void*, std::uint32_t*) override { return -1; }
    OSStatus initialise() override { return 0; }
    OSStatus uninitialise() override { return 0; }
    OSStatus render(AudioUnitRenderActionFlags*, const AudioTimeStamp*, std::uint32_t, std::uint32_t, AudioBufferList*) override { return -1; }
};
