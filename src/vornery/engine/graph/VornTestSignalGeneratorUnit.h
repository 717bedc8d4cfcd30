#pragma once

#include "graph/VornCallbackUnit.h"

/// A 440 Hz tone in 16-bit mono at 22050 frames per second.
class VornTestSignalGeneratorUnit : public VornCallbackUnit {
  public:
    VornTestSignalGeneratorUnit();

  private:
    static OSStatus render(void* self, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList* data);
};
