#pragma once

#include "DelayLine.h"
#include "SteadyLine.h"
#include "graph/VornCallbackUnit.h"

struct ResonanceData : DelayLineData {
    Shared<float> feedback = 0.95f;
    Shared<float> spare = 0.f;  // without meaning
    Shared<float> resonance = 0.f;
    Shared<float> cutoff = 1.f;
    Shared<float> state1 = 0.f;
    Shared<float> state2 = 0.f;
};

/// A delay line with inverted, low-passed feedback, which rings at the odd multiples of
/// 44100 / (2 * length) Hz, and a low-pass on its output. Mono 32-bit float.
class ResonanceFilter : public VornCallbackUnit {
  public:
    ResonanceFilter();

    float feedback() const { return m_data.feedback; }
    void setFeedback(float gain) { m_data.feedback = gain; }
    float resonance() const { return m_data.resonance; }
    /// Brightness of the feedback, 0 to 1.
    void setResonance(float resonance) { m_data.resonance = resonance; }
    float cutoff() const { return m_data.cutoff; }
    /// Brightness of the output, 0 to 1.
    void setCutoff(float cutoff) { m_data.cutoff = cutoff; }
    float delay() const { return m_line.delay(); }
    /// Seconds; 0 passes the signal through. [control]
    void setDelay(float seconds) { m_line.setDelay(seconds); }
    /// Frees delay lines that were outgrown. [control]
    void collect() { m_line.collect(); }

    ResonanceData* data() { return &m_data; }

  private:
    static OSStatus render(void* unit, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList* data);
    void resonate(const DelayLine::Loop& loop, float* samples, std::uint32_t frames) noexcept;
    bool rest(const DelayLine::Loop& loop, float* samples, std::uint32_t frames) const noexcept;

    ResonanceData m_data;
    DelayLine m_line;
    SteadyLine m_steady;
};
