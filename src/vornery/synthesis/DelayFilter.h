#pragma once

#include "DelayLine.h"
#include "SteadyLine.h"
#include "graph/VornCallbackUnit.h"

struct EchoData : DelayLineData {
    Shared<float> feedback = 0.f;
};

/// Echo: a delay line whose output is added to the signal and fed back. Mono 32-bit float.
class DelayFilter : public VornCallbackUnit {
  public:
    /// Seconds, gain of each repetition.
    DelayFilter(float delay, float feedback);

    float delay() const { return m_line.delay(); }
    /// 0 passes the signal through. [control]
    void setDelay(float seconds) { m_line.setDelay(seconds); }
    float feedback() const { return m_data.feedback; }
    void setFeedback(float gain) { m_data.feedback = gain; }
    /// Frees delay lines that were outgrown. [control]
    void collect() { m_line.collect(); }

    EchoData* data() { return &m_data; }

  private:
    static OSStatus render(void* unit, AudioUnitRenderActionFlags* flags,
                           const AudioTimeStamp* time, std::uint32_t bus, std::uint32_t frames,
                           AudioBufferList* data);
    bool rest(const DelayLine::Loop& loop, float* samples, std::uint32_t frames) const noexcept;

    EchoData m_data;
    DelayLine m_line;
    SteadyLine m_steady;
};
