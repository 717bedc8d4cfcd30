#pragma once

#include "graph/PlatformProperty.h"
#include "graph/VornComponentUnit.h"

/// What the three units over the hardware component have in common. [control]
namespace HardwareCalls {

inline std::shared_ptr<VornUnitDescription> description() {
    return VornUnitDescription::appleUnitDescriptionWithType(fourCC("auou"), fourCC("rioc"));
}

/// Switches one side of the hardware on. `Width` is the type, and so the size, of the value given.
template <typename Width>
void enable(VornUnit& hardware, AudioUnitScope scope, AudioUnitElement element) {
    PlatformProperty::set(hardware.unit(), kAudioOutputUnitProperty_EnableIO, scope, element,
                          Width{1});
}

inline void setCapture(VornUnit& hardware, const AURenderCallbackStruct& callback,
                       const StreamDescription& format) {
    PlatformProperty::set(hardware.unit(), kAudioUnitProperty_StreamFormat, kAudioUnitScope_Output,
                          1, format);
    PlatformProperty::set(hardware.unit(), kAudioOutputUnitProperty_SetInputCallback,
                          kAudioUnitScope_Global, 1, callback);
}

}  // namespace HardwareCalls
