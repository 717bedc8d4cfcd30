#include "graph/VornRecordingUnit.h"

#include "graph/HardwareCalls.h"

VornRecordingUnit::VornRecordingUnit() : VornComponentUnit(HardwareCalls::description()) {
    HardwareCalls::enable<std::uint8_t>(*this, kAudioUnitScope_Input, 1);
}

void VornRecordingUnit::setRecordingCallback(const AURenderCallbackStruct& callback,
                                             const StreamDescription& format) {
    HardwareCalls::setCapture(*this, callback, format);
}

void VornRecordingUnit::record() {
    Log::status(AudioOutputUnitStart(unit()));
}

void VornRecordingUnit::stop() {
    Log::status(AudioOutputUnitStop(unit()));
}
