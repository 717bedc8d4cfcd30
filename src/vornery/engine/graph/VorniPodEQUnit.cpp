#include "graph/VorniPodEQUnit.h"

#include "graph/PlatformProperty.h"

// Preset records hold a string, so these two properties pass a pointer to the record or the list.

VorniPodEQUnit::VorniPodEQUnit()
    : VornComponentUnit(
          VornUnitDescription::appleUnitDescriptionWithType(fourCC("aufx"), fourCC("ipeq"))) {}

std::vector<VorniPodEQUnit::Preset> VorniPodEQUnit::presets() const {
    std::vector<AUPreset> factory;
    PlatformProperty::get(unit(), kAudioUnitProperty_FactoryPresets, kAudioUnitScope_Global, 0,
                          &factory);
    std::vector<Preset> list;
    for (const AUPreset& preset : factory)
        list.emplace_back(preset.presetNumber, preset.presetName);
    return list;
}

VorniPodEQUnit::Preset VorniPodEQUnit::currentPreset() const {
    AUPreset preset;
    PlatformProperty::get(unit(), kAudioUnitProperty_PresentPreset, kAudioUnitScope_Global, 0,
                          &preset);
    return {preset.presetNumber, preset.presetName};
}

void VorniPodEQUnit::setCurrentPreset(const Preset& preset) {
    const AUPreset record{preset.first, preset.second};
    PlatformProperty::set(unit(), kAudioUnitProperty_PresentPreset, kAudioUnitScope_Global, 0,
                          &record);
}
