#include "graph/VornConverterUnit.h"

#include "graph/PlatformProperty.h"

VornConverterUnit::VornConverterUnit()
    : VornComponentUnit(
          VornUnitDescription::appleUnitDescriptionWithType(fourCC("aufc"), fourCC("conv"))) {}

StreamDescription VornConverterUnit::sourceFormat() const {
    return PlatformProperty::get(unit(), kAudioUnitProperty_StreamFormat, kAudioUnitScope_Input, 0,
                                 StreamDescription{});
}

void VornConverterUnit::setSourceFormat(const StreamDescription& format) {
    PlatformProperty::set(unit(), kAudioUnitProperty_StreamFormat, kAudioUnitScope_Input, 0,
                          format);
}

StreamDescription VornConverterUnit::targetFormat() const {
    return PlatformProperty::get(unit(), kAudioUnitProperty_StreamFormat, kAudioUnitScope_Output, 0,
                                 StreamDescription{});
}

void VornConverterUnit::setTargetFormat(const StreamDescription& format) {
    PlatformProperty::set(unit(), kAudioUnitProperty_StreamFormat, kAudioUnitScope_Output, 0,
                          format);
}
