#pragma once

#include "graph/VornCallbackUnit.h"
#include "handoff/Shared.h"

/// One-pole low-pass. All filters of a process share one state: two of them disturb each other.
/// Mono 32-bit float.
class LowPassFilter : public VornCallbackUnit {
  public:
    LowPassFilter();

    float filterAlpha() const { return m_filterAlpha; }
    /// Smoothing coefficient, 0 to 1; read once a render. [any thread]
    void setFilterAlpha(float alpha) { m_filterAlpha = alpha; }

  private:
    static OSStatus render(void* unit, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList* data);

    Shared<float> m_filterAlpha = 0.f;
};
