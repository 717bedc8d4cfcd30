#include "graph/VornMixerUnit.h"

#include "graph/PlatformProperty.h"

VornMixerUnit::VornMixerUnit() : VornMixerUnit(fourCC("mcmx")) {}

VornMixerUnit::VornMixerUnit(std::uint32_t subtype)
    : VornComponentUnit(
          VornUnitDescription::appleUnitDescriptionWithType(fourCC("aumx"), subtype)) {}

std::uint32_t VornMixerUnit::inputBusCount() const {
    return PlatformProperty::get(unit(), kAudioUnitProperty_ElementCount, kAudioUnitScope_Input, 0,
                                 std::uint32_t{0});
}

void VornMixerUnit::setInputBusCount(std::uint32_t count) {
    PlatformProperty::set(unit(), kAudioUnitProperty_ElementCount, kAudioUnitScope_Input, 0, count);
}

Vorn3DMixerUnit::Vorn3DMixerUnit() : VornMixerUnit(fourCC("3dem")) {}

void Vorn3DMixerUnit::setAzimuth(std::uint32_t bus, float degrees) {
    set(k3DMixerParam_Azimuth, bus, degrees);
}

void Vorn3DMixerUnit::setElevation(std::uint32_t bus, float degrees) {
    set(k3DMixerParam_Elevation, bus, degrees);
}

void Vorn3DMixerUnit::setDistance(std::uint32_t bus, float metres) {
    set(k3DMixerParam_Distance, bus, metres);
}

void Vorn3DMixerUnit::setGain(std::uint32_t bus, float decibels) {
    set(k3DMixerParam_Gain, bus, decibels);
}

void Vorn3DMixerUnit::set(AudioUnitParameterID parameter, std::uint32_t bus, float value) {
    Log::status(AudioUnitSetParameter(unit(), parameter, kAudioUnitScope_Input, bus, value));
}
