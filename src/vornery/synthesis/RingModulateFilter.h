#pragma once

#include "graph/VornCallbackUnit.h"
#include "handoff/Shared.h"

/// Multiplies its upstream by a sine, blended with the plain signal. Mono 32-bit float.
/// Parameters are read once a render. [any thread]
class RingModulateFilter : public VornCallbackUnit {
  public:
    RingModulateFilter();

    float frequency() const { return m_frequency; }
    void setFrequency(float hertz) { m_frequency = hertz; }
    float depth() const { return m_depth; }
    /// 0 is the plain signal, 1 full ring modulation.
    void setDepth(float depth) { m_depth = depth; }
    /// The modulator's phase in radians, which every render moves on.
    float offset() const { return m_offset; }
    void setOffset(float radians) { m_offset = radians; }

  private:
    static OSStatus render(void* unit, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList* data);

    Shared<float> m_frequency = 440.f;
    Shared<float> m_depth = 0.f;
    Shared<float> m_offset = 0.f;
};
