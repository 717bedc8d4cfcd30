#pragma once

#include "graph/VornCallbackUnit.h"
#include "handoff/Shared.h"

/// Lifts quiet samples toward full scale with a power curve that keeps the sign: x becomes
/// x^(1 - strength). Mono 32-bit float.
class OverdriveDistortionFilter : public VornCallbackUnit {
  public:
    OverdriveDistortionFilter();

    float strength() const { return m_strength; }
    /// 0 or less is off, up to 1; read once a render. [any thread]
    void setStrength(float strength) { m_strength = strength; }

  private:
    static OSStatus render(void* unit, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList* data);

    Shared<float> m_strength = 0.f;
};
