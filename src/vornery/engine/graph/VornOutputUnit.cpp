#include "graph/VornOutputUnit.h"

#include "graph/HardwareCalls.h"

VornOutputUnit::VornOutputUnit() : VornComponentUnit(HardwareCalls::description()) {
    HardwareCalls::enable<std::uint32_t>(*this, kAudioUnitScope_Output, 0);
}

void VornOutputUnit::play() {
    Log::status(AudioOutputUnitStart(unit()));
}

void VornOutputUnit::stop() {
    Log::status(AudioOutputUnitStop(unit()));
}
