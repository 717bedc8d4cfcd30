#include "graph/VornIOUnit.h"

#include "graph/HardwareCalls.h"
#include "graph/PlatformProperty.h"

VornIOUnit::VornIOUnit() : VornComponentUnit(HardwareCalls::description()) {
    HardwareCalls::enable<std::uint8_t>(*this, kAudioUnitScope_Output, 0);
}

void VornIOUnit::enableRecordingVia(const AURenderCallbackStruct& callback,
                                    const StreamDescription& format) {
    HardwareCalls::enable<std::uint8_t>(*this, kAudioUnitScope_Input, 1);
    HardwareCalls::setCapture(*this, callback, format);
}

void VornIOUnit::disableRecording() {
    PlatformProperty::set(unit(), kAudioOutputUnitProperty_SetInputCallback, kAudioUnitScope_Global,
                          1, AURenderCallbackStruct{});
}

void VornIOUnit::start() {
    Log::status(AudioOutputUnitStart(unit()));
}

void VornIOUnit::stop() {
    Log::status(AudioOutputUnitStop(unit()));
}
