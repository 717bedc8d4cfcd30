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
